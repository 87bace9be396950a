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
            SeenBox seen;
            seen.title = box->windowTitle();
            seen.text = box->text();
            seen.details = box->detailedText();
            seen.icon = box->icon();
            seen.buttons = box->standardButtons();
            if (box->defaultButton())
                seen.defaultButton
                    = box->standardButton(static_cast<QAbstractButton *>(box->defaultButton()));
            seen.hasWindowIcon = !box->windowIcon().availableSizes().isEmpty();
            seen.pixmap = box->iconPixmap().toImage();
            boxes << seen;
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

// Answers the next directory dialog: chooses `dir`, or cancels when it is
// empty.
inline void answerDirectoryDialog(const QString &dir)
{
    auto *timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, dir] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        if (dir.isEmpty()) {
            dialog->reject();
        } else {
            // Typed as a user would: the name field may hold the last part of
            // a start directory that does not exist.
            if (auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
                name->setText(dir);
            static_cast<QDialog *>(dialog)->accept();
        }
    });
    timer->start(10);
}

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
