// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "lookout/settings_of_test.h"
#include "support/modal_driver.h"
#include "viewer/dialogs/error_dialog.h"
#include "viewer/dialogs/get_loginpassword_dialog.h"
#include "viewer/download/ftp_config.h"

namespace {

class Dialogs : public testing::Test {
 protected:
  SettingsOfTest settings;
  ModalDriver driver;
};

}  // namespace

TEST_F(Dialogs, WarnWithTheGivenTexts) {
  const Dk::ErrorDialog box("Title", "Text", "Detail", nullptr, QMessageBox::Ok);
  EXPECT_EQ(box.windowTitle(), "Title");
  EXPECT_EQ(box.text(), "Text");
  EXPECT_EQ(box.detailedText(), "Detail");
  EXPECT_EQ(box.icon(), QMessageBox::Warning);
  EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
  EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Ok));
}

TEST_F(Dialogs, HaveADefaultOnlyWhereThereIsOk) {
  const Dk::ErrorDialog box("Title", "Text", nullptr, QMessageBox::Close);
  EXPECT_EQ(box.defaultButton(), nullptr);
}

TEST_F(Dialogs, BelongToTheirParent) {
  QWidget parent;
  EXPECT_EQ(Dk::ErrorDialog("T", "t", &parent, QMessageBox::Ok).parentWidget(), &parent);
  EXPECT_EQ(Dk::InformationDialog("T", "t", &parent).parentWidget(), &parent);
}

TEST_F(Dialogs, ShowTextsAsTheyAre) {
  EXPECT_EQ(Dk::ErrorDialog("T", "<b>x</b>", nullptr, QMessageBox::Ok).textFormat(), Qt::PlainText);
}

TEST_F(Dialogs, InformWithAnotherIconAndOneButton) {
  Dk::InformationDialog box("Title", "Text", nullptr);
  EXPECT_EQ(box.icon(), QMessageBox::Information);
  EXPECT_EQ(box.standardButtons(), QMessageBox::NoButton);
  driver.on<QMessageBox>("Title", [](QMessageBox& shown) {
    ASSERT_EQ(shown.buttons().size(), 1);
    QTest::mouseClick(shown.buttons().first(), Qt::LeftButton);
  });
  EXPECT_EQ(box.displayDialog(), QMessageBox::Ok);
}

TEST_F(Dialogs, ShowTheArrowWhileTheyExist) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  {
    const Dk::ErrorDialog box("Title", "Text", nullptr, QMessageBox::Ok);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
  }
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(Dialogs, ReturnTheButtonThatWasPressed) {
  Dk::ErrorDialog box("Title", "Text", nullptr, QMessageBox::Retry);
  driver.on<QMessageBox>("Title", [](QMessageBox& shown) {
    QTest::mouseClick(shown.button(QMessageBox::Retry), Qt::LeftButton);
  });
  EXPECT_EQ(box.displayDialog(), QMessageBox::Retry);
  EXPECT_EQ(driver.seen(), QStringList{"Title"});
}

TEST_F(Dialogs, AreNotShownUnderRemoteControl) {
  for (const auto& [setting, seen] :
       {std::pair(QVariant(), 1), std::pair(QVariant(true), 1), std::pair(QVariant("false"), 2)}) {
    QSettings().setValue("Preferences/remoteControl", setting);
    Dk::ErrorDialog box("Title", "Text", nullptr, QMessageBox::Ok);
    driver.on<QMessageBox>("Title", [](QMessageBox& shown) { shown.accept(); });
    const int answer = box.displayDialog();
    if (setting.toBool()) {
      EXPECT_EQ(answer, 1024);
    }
    EXPECT_EQ(driver.seen().size(), seen);
    EXPECT_FALSE(box.isVisible());
  }
}

TEST_F(Dialogs, CloseByTheirWindowButtonWhateverTheOthersAre) {
  for (const auto button : {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::NoButton}) {
    Dk::ErrorDialog box("Title", "Text", nullptr, button);
    if (button == QMessageBox::Yes) box.addButton(QMessageBox::Save);  // none of them is Escape's
    bool closed = false;
    driver.on<QMessageBox>("Title", [&](QMessageBox& shown) { closed = shown.close(); });
    box.displayDialog();
    EXPECT_TRUE(closed);
    EXPECT_FALSE(box.isVisible());
  }
}

TEST_F(Dialogs, AskForALogin) {
  Dk::GetLoginPasswordDialog dialog(nullptr);
  EXPECT_EQ(dialog.windowTitle(), "Authentication required");
  EXPECT_EQ(dialog.minimumWidth(), 250);
  auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  ASSERT_NE(grid, nullptr);
  const auto label = [&](int row) {
    return qobject_cast<QLabel*>(grid->itemAtPosition(row, 0)->widget())->text();
  };
  EXPECT_EQ(label(0), "Please authenticate to continue.");
  EXPECT_EQ(grid->itemAtPosition(0, 0), grid->itemAtPosition(0, 1));
  EXPECT_EQ(label(1), "Login:");
  EXPECT_EQ(label(2), "Password:");
  auto* login = qobject_cast<QLineEdit*>(grid->itemAtPosition(1, 1)->widget());
  auto* password = qobject_cast<QLineEdit*>(grid->itemAtPosition(2, 1)->widget());
  EXPECT_EQ(login->text() + password->text(), "");
  EXPECT_EQ(login->echoMode(), QLineEdit::Normal);
  EXPECT_EQ(password->echoMode(), QLineEdit::Password);
  auto* buttons = qobject_cast<QDialogButtonBox*>(grid->itemAtPosition(3, 0)->widget());
  ASSERT_NE(buttons, nullptr);
  EXPECT_EQ(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  EXPECT_EQ(buttons->orientation(), Qt::Horizontal);
}

TEST_F(Dialogs, TellTheLoginThatWasTyped) {
  Dk::GetLoginPasswordDialog dialog(nullptr);
  driver.on<QDialog>("Authentication required", [](QDialog& shown) {
    const auto edits = shown.findChildren<QLineEdit*>();
    QTest::keyClicks(edits[0], "tam");
    EXPECT_EQ(edits[0]->nextInFocusChain(), edits[1]);
    QTest::keyClicks(edits[1], "se cret");
    QTest::keyClick(edits[1], Qt::Key_Return);
  });
  EXPECT_EQ(dialog.exec(), QDialog::Accepted);
  QString login, password;
  dialog.getLoginPassword(login, password);
  EXPECT_EQ(login, "tam");
  EXPECT_EQ(password, "se cret");
}

TEST_F(Dialogs, MayBeAskedInVain) {
  Dk::GetLoginPasswordDialog dialog(nullptr);
  driver.on<QDialog>("Authentication required", [](QDialog& shown) {
    auto* buttons = shown.findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
  });
  EXPECT_EQ(dialog.exec(), QDialog::Rejected);
}

TEST_F(Dialogs, OpenInTheMiddleOfTheirParentOrOfTheScreen) {
  QWidget parent;
  parent.setGeometry(250, 200, 400, 300);
  parent.show();
  const QRect screen = parent.screen()->availableGeometry();
  const auto expectIn = [](QDialog& dialog, const QRect& around) {
    dialog.show();
    const QPoint off = dialog.frameGeometry().center() - around.center();
    EXPECT_LE(off.manhattanLength(), 4) << dialog.windowTitle().toStdString();
  };
  for (QWidget* over : {&parent, static_cast<QWidget*>(nullptr)}) {
    const QRect around = over != nullptr ? over->frameGeometry() : screen;
    Dk::GetLoginPasswordDialog login(over);
    expectIn(login, around);
    Dk::ErrorDialog error("Title", "Text", over, QMessageBox::Ok);
    expectIn(error, around);
    Dk::InformationDialog information("Title", "Text", over);
    expectIn(information, around);
  }
}

TEST(FtpConfig, StartsWithoutALogin) {
  EXPECT_EQ(Dk::FtpConfig::a_login, "");
  EXPECT_EQ(Dk::FtpConfig::a_password, "");
  EXPECT_EQ(Dk::FtpConfig::a_defaultUploadSubfolder, "");
  EXPECT_EQ(Dk::FtpConfig::a_defaultPort, 21);
}
