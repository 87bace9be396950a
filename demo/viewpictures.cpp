// SPDX-License-Identifier: MIT
//
// viewpictures DIR EXAMPLES: draws the pictures of the page that the README
// shows, as a user sees them, into DIR, each from a bundled example of
// EXAMPLES opened on a copy: the floorplan with the tooltip of a shared PLL
// showing, and each sample protocol's dialog with a problem marked next to
// its field. Run it from the staged bin/ on a real display
// (scripts/pictures.sh gives it a virtual one): a tooltip is a window of
// its own, which only the screen shows together with the floorplan.

#include "pagedriver.h"

#include "page/serdesipdlg.h"
#include "views/graphicsview.h"
#include "views/serdesitem.h"
#include "views/serdesview.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

using IPSERDESIP::serdesipdlg;

namespace {

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

// A dialog picture: the example, the instance deleted to make room, the
// protocol, and the fields set so that one of them shows a problem.
struct DialogPicture
{
    const char *file;
    const char *example;
    const char *freed;
    const char *protocol;
    QStringList steps;
};

const DialogPicture DIALOGS[] = {
    // bcdr runs Q1 REFCLK0 at 125 MHz.
    {"dialog_customphy.png",
     "880k",
     "customphy_1st",
     "Custom PHY",
     {"listLanes=Q1 Lane0,Q1 Lane1", "comboPllQ1=QPLL0", "comboReferenceQ1=Q1 REFCLK0",
      "comboRefFreqQ1=156.25"}},
    // eth10g runs QPLL0 from Q0 REFCLK0.
    {"dialog_10gbaser.png",
     "370k",
     "customphy",
     "10GBASE-R",
     {"listLanes=Q0 Lane3", "comboPll=QPLL0", "comboReference=Q0 REFCLK1"}},
    // eth10g runs QPLL0 at 10.3125 Gbps.
    {"dialog_bcdr.png",
     "90k",
     "bcdr",
     "BCDR",
     {"listLanes=Q0 Lane3", "comboPll=QPLL0 (shared by the quad)", "comboRxRate=2.5"}},
};

// Lets queued layout passes, paints and tooltips run for a while.
void settle(int ms = 700)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
}

// The page opened on a copy of the example in `work`; null when it cannot
// be opened.
std::unique_ptr<serdesipdlg> openExample(const QString &examples, const char *example,
                                         const QString &work)
{
    const QString file = work + QStringLiteral("/serdes.ipc");
    if (!QFile::copy(examples + QLatin1Char('/') + QLatin1String(example)
                         + QStringLiteral("/serdes.ipc"),
                     file)) {
        err() << "Cannot copy the example " << example << "\n";
        return nullptr;
    }
    auto page = std::make_unique<serdesipdlg>(coreInfo());
    if (!page->setOpening(work, file)) {
        err() << "Cannot open the example " << example << "\n";
        return nullptr;
    }
    page->move(0, 0);
    page->show();
    settle();
    return page;
}

// The floorplan of the one-quad example, whose QPLL0 two instances share,
// with that PLL's tooltip: the screen around the floorplan and the tip.
bool floorplan(const QString &examples, const QString &path)
{
    QTemporaryDir work;
    const auto page = openExample(examples, "370k", work.path());
    if (!page)
        return false;
    auto *view = page->findChild<IPSERDESIP::serdesView *>();
    IPSERDESIP::SerdesItem *pll = view ? view->q0Qpll[0] : nullptr;
    if (!pll) {
        err() << "The page shows no floorplan\n";
        return false;
    }
    QWidget *viewport = view->floorplanView->viewport();
    const QPoint at = view->floorplanView->mapFromScene(pll->sceneBoundingRect().center());
    QHelpEvent help(QEvent::ToolTip, at, viewport->mapToGlobal(at));
    QApplication::sendEvent(viewport, &help);
    settle();
    QRect area(view->mapToGlobal(QPoint()), view->size());
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("QTipLabel"))
            area |= window->frameGeometry();
    }
    const QPixmap shot = QGuiApplication::primaryScreen()->grabWindow(0, area.x(), area.y(),
                                                                      area.width(), area.height());
    if (shot.save(path))
        return true;
    err() << "Cannot write " << path << "\n";
    return false;
}

// A protocol's dialog over the page, its fields set, saved as it shows the
// problem, and closed without a change to the page.
bool dialog(const QString &examples, const DialogPicture &picture, const QString &path)
{
    QTemporaryDir work;
    const auto page = openExample(examples, picture.example, work.path());
    if (!page)
        return false;
    page->deleteIP(QLatin1String(picture.freed));
    bool saved = false;
    QTimer::singleShot(300, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            err() << picture.protocol << ": no dialog came up\n";
            return;
        }
        QString failed;
        if (!applySteps(dialog, picture.steps, &failed)) {
            err() << picture.protocol << ": cannot set " << failed << "\n";
        } else {
            settle();
            saved = dialog->grab().save(path);
            if (!saved)
                err() << "Cannot write " << path << "\n";
        }
        dialog->reject();
    });
    page->createIP(QLatin1String(picture.protocol));
    return saved;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 3) {
        err() << "usage: viewpictures DIR EXAMPLES\n";
        return 2;
    }
    const QDir dir(QString::fromLocal8Bit(argv[1]));
    const QString examples = QDir(QString::fromLocal8Bit(argv[2])).absolutePath();
    if (!QDir().mkpath(dir.path())) {
        err() << "Cannot make " << dir.path() << "\n";
        return 1;
    }
    bool ok = floorplan(examples, dir.absoluteFilePath(QStringLiteral("floorplan.png")));
    for (const DialogPicture &picture : DIALOGS)
        ok = dialog(examples, picture, dir.absoluteFilePath(QLatin1String(picture.file))) && ok;
    return ok ? 0 : 1;
}
