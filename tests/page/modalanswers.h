// SPDX-License-Identifier: MIT
#pragma once

// Answers the modal dialogs that a dialog under test opens, as a user would,
// and records what each message box said.

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QIcon>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>

#include <functional>

Q_DECLARE_METATYPE(QMessageBox::StandardButton)

struct SeenBox
{
    QString title;
    QString text;
    QString details;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    bool hasWindowIcon = false;
    QImage pixmap;
};

// While it lives, every message box that comes up is recorded and closed
// with `answer`, or with its only button when it has no such button.
class MessageBoxAnswers
{
public:
    explicit MessageBoxAnswers(QMessageBox::StandardButton answer = QMessageBox::Ok)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, answer] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            QPushButton *preset = box->defaultButton();
            boxes << SeenBox{box->windowTitle(),
                             box->text(),
                             box->detailedText(),
                             box->icon(),
                             box->standardButtons(),
                             preset ? box->standardButton(preset) : QMessageBox::NoButton,
                             !box->windowIcon().availableSizes().isEmpty(),
                             box->iconPixmap().toImage()};
            QAbstractButton *button = box->button(answer);
            if (!button)
                button = box->buttons().value(0);
            button->click();
        });
        m_timer.start(10);
    }

    QList<SeenBox> boxes;

private:
    QTimer m_timer;
};

// Runs `action` on the next modal widget of type T once it is up.
template<typename T>
void whenModal(std::function<void(T *)> action)
{
    auto *timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        auto *widget = qobject_cast<T *>(QApplication::activeModalWidget());
        if (!widget || !widget->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        action(widget);
    });
    timer->start(10);
}

// Answers the next directory dialog: chooses `dir`, or cancels when it is
// empty. The name is typed as a user would: the field may hold the last part
// of a start directory that does not exist.
inline void answerDirectoryDialog(const QString &dir)
{
    whenModal<QFileDialog>([dir](QFileDialog *dialog) {
        if (dir.isEmpty())
            return dialog->reject();
        if (auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
            name->setText(dir);
        static_cast<QDialog *>(dialog)->accept();
    });
}
