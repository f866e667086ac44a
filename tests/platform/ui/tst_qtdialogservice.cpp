// The Qt dialogs as the user sees them: icon, buttons, default and the answer given back.

#include "platform/DialogService.h"
#include "platform/ui/QtDialogService.h"

#include <functional>
#include <memory>
#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace vd::platform;

namespace {

// Runs `act` on the modal dialog of type T once it is up.
template <typename T> void whenShown(std::function<void(T*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        if (auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(dialog);
        }
    });
    timer->start();
}

} // namespace

class TestQtDialogService : public QObject
{
    Q_OBJECT

private slots:
    void messageBoxLooksAsStyled_data();
    void messageBoxLooksAsStyled();
    void keysAnswerWithDefaultAndEscape_data();
    void keysAnswerWithDefaultAndEscape();
    void clickedButtonIsTheAnswer();
    void inputBoxGivesTextOrCancel();
};

using Buttons = QList<int>; // QMessageBox::StandardButton values

void TestQtDialogService::messageBoxLooksAsStyled_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("icon");
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::newRow("plain") << int(vbOKOnly) << int(QMessageBox::NoIcon) << Buttons{QMessageBox::Ok}
                           << int(QMessageBox::Ok);
    QTest::newRow("warning") << int(vbExclamation) << int(QMessageBox::Warning)
                             << Buttons{QMessageBox::Ok} << int(QMessageBox::Ok);
    QTest::newRow("retry cancel critical, 21")
        << 21 << int(QMessageBox::Critical) << Buttons{QMessageBox::Retry, QMessageBox::Cancel}
        << int(QMessageBox::Retry);
    QTest::newRow("yes no question, second")
        << int(vbYesNo | vbQuestion | vbDefaultButton2) << int(QMessageBox::Question)
        << Buttons{QMessageBox::Yes, QMessageBox::No} << int(QMessageBox::No);
    QTest::newRow("yes no cancel info, third")
        << int(vbYesNoCancel | vbInformation | vbDefaultButton3) << int(QMessageBox::Information)
        << Buttons{QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel}
        << int(QMessageBox::Cancel);
    QTest::newRow("abort retry ignore")
        << int(vbAbortRetryIgnore) << int(QMessageBox::NoIcon)
        << Buttons{QMessageBox::Abort, QMessageBox::Retry, QMessageBox::Ignore}
        << int(QMessageBox::Abort);
}

void TestQtDialogService::messageBoxLooksAsStyled()
{
    QFETCH(int, style);
    QFETCH(int, icon);
    QFETCH(Buttons, buttons);
    QFETCH(int, defaultButton);
    std::unique_ptr<QMessageBox> box(QtDialogService::createMessageBox(
        QStringLiteral("<b>Datei</b> nicht gefunden"), style, QStringLiteral("Titel"), nullptr));
    QCOMPARE(box->windowTitle(), QStringLiteral("Titel"));
    QCOMPARE(box->text(), QStringLiteral("<b>Datei</b> nicht gefunden"));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    QCOMPARE(int(box->icon()), icon);
    QCOMPARE(box->buttons().size(), buttons.size());
    for (int b : buttons)
        QVERIFY(box->button(QMessageBox::StandardButton(b)));
    QCOMPARE(int(box->standardButton(box->defaultButton())), defaultButton);
}

void TestQtDialogService::keysAnswerWithDefaultAndEscape_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("answer");
    QTest::newRow("enter, yes no second")
        << int(vbYesNo | vbDefaultButton2) << int(Qt::Key_Return) << int(vbNo);
    QTest::newRow("enter, 21") << 21 << int(Qt::Key_Return) << int(vbRetry);
    QTest::newRow("escape, 21") << 21 << int(Qt::Key_Escape) << int(vbCancel);
    QTest::newRow("escape, ok only") << int(vbOKOnly) << int(Qt::Key_Escape) << int(vbOK);
}

void TestQtDialogService::keysAnswerWithDefaultAndEscape()
{
    QFETCH(int, style);
    QFETCH(int, key);
    QFETCH(int, answer);
    QtDialogService service;
    whenShown<QMessageBox>([key](QMessageBox* box) { QTest::keyClick(box, Qt::Key(key)); });
    QCOMPARE(service.msgBox(QStringLiteral("Frage"), style), answer);
}

void TestQtDialogService::clickedButtonIsTheAnswer()
{
    QtDialogService service;
    QString title;
    whenShown<QMessageBox>([&title](QMessageBox* box) {
        title = box->windowTitle();
        QTest::mouseClick(box->button(QMessageBox::Ignore), Qt::LeftButton);
    });
    QCOMPARE(service.msgBox(QStringLiteral("Fehler"), vbAbortRetryIgnore), int(vbIgnore));
    QCOMPARE(title, QApplication::applicationName()); // no title given
}

void TestQtDialogService::inputBoxGivesTextOrCancel()
{
    QtDialogService service;
    QString shownDefault;
    whenShown<QInputDialog>([&shownDefault](QInputDialog* dialog) {
        shownDefault = dialog->textValue();
        dialog->setTextValue(QStringLiteral("geheim"));
        dialog->accept();
    });
    QCOMPARE(service.inputBox(QStringLiteral("Kennwort:"), QStringLiteral("DB"),
                              QStringLiteral("vorgabe")),
             std::optional<QString>(QStringLiteral("geheim")));
    QCOMPARE(shownDefault, QStringLiteral("vorgabe"));

    whenShown<QInputDialog>([](QInputDialog* dialog) { dialog->reject(); });
    QCOMPARE(service.inputBox(QStringLiteral("Kennwort:"), QStringLiteral("DB")), std::nullopt);
}

QTEST_MAIN(TestQtDialogService)
#include "tst_qtdialogservice.moc"
