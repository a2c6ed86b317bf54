#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "platform/qt/qt_printer.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

// The system's own print dialog, on a machine where PDF is a printer too.
class ThePrintDialog : public ModalDeeds {
 protected:
  // Chooses the printer that makes a PDF of that name.
  void ChoosePdf(const std::string& name) {
    auto* printers = Find<QComboBox>("printers");
    printers->setCurrentIndex(printers->findText("Print to File (PDF)"));
    Find<QLineEdit>("filename")->setText(QString::fromStdString(home.File(name)));
  }
  bool IsOffered(const char* name) const {
    const auto* radio = Form()->findChild<QWidget*>(name);
    return radio != nullptr && radio->isVisible() && radio->isEnabled();
  }

  TemporaryDirectory home;
  QtEvents events;
  QtPrinter printer{events};
  PrintChoice choice;
};

TEST_F(ThePrintDialog, GivesPrinterAndCopies) {
  Then("PrintDialog", [this] {
    ChoosePdf("report.pdf");
    Find<QSpinBox>("copies")->setValue(3);
    dynamic_cast<QPrintDialog*>(Form())->accept();
  });
  ASSERT_TRUE(printer.Choose(choice));
  EXPECT_EQ(choice.PrinterName, kPdfPrinter);
  EXPECT_TRUE(choice.IsColour);
  EXPECT_EQ(choice.Copies, 3);
  EXPECT_EQ(choice.OutputFile, home.File("report.pdf"));
}

TEST_F(ThePrintDialog, OffersNoPartOfTheDocument) {
  Then("PrintDialog", [this] {
    EXPECT_FALSE(IsOffered("printRange"));
    EXPECT_FALSE(IsOffered("printSelection"));
    EXPECT_FALSE(IsOffered("printCurrentPage"));
    EXPECT_FALSE(IsOffered("pageSetCombo"));
    EXPECT_FALSE(IsOffered("pagesRadioButton"));
    EXPECT_FALSE(IsOffered("printAll"));
    EXPECT_FALSE(IsOffered("reverse"));
    EXPECT_FALSE(IsOffered("collate"));
    dynamic_cast<QPrintDialog*>(Form())->reject();
  });
  EXPECT_FALSE(printer.Choose(choice));
}

TEST_F(ThePrintDialog, BeginsWithTheLastPrinter) {
  choice.PrinterName = kPdfPrinter;
  Then("PrintDialog", [] {
    EXPECT_EQ(Find<QComboBox>("printers")->currentText(), QString(kPdfPrinter));
    dynamic_cast<QPrintDialog*>(Form())->reject();
  });
  EXPECT_FALSE(printer.Choose(choice));
  EXPECT_EQ(choice.PrinterName, kPdfPrinter);
}

TEST_F(ThePrintDialog, HasNoPageAfterCancel) {
  Then("PrintDialog", [] { dynamic_cast<QPrintDialog*>(Form())->reject(); });
  EXPECT_FALSE(printer.Choose(choice));
  EXPECT_EQ(printer.BeginPage(), nullptr);
  EXPECT_TRUE(printer.EndJob());
}

TEST_F(ThePrintDialog, HasTheCopiesInSight) {
  Then("PrintDialog", [] {
    EXPECT_TRUE(Find("copies")->isVisible());
    EXPECT_TRUE(Find("copies")->isEnabled());
    for (const auto* button : Form()->findChildren<QPushButton*>()) {
      EXPECT_FALSE(button->isVisible() && button->text().contains("Options"));
    }
    dynamic_cast<QPrintDialog*>(Form())->reject();
  });
  EXPECT_FALSE(printer.Choose(choice));
}

TEST_F(ThePrintDialog, OffersTheWholeNameOfTheDocumentForAPdf) {
  choice.Document = "M260314A.OVN";
  Then("PrintDialog", [] {
    EXPECT_TRUE(TextOf("filename").ends_with("/M260314A.OVN.pdf")) << TextOf("filename");
    auto* printers = Find<QComboBox>("printers");
    printers->setCurrentIndex(printers->findText("Print to File (PDF)"));
    EXPECT_TRUE(TextOf("filename").ends_with("/M260314A.OVN.pdf")) << TextOf("filename");
    dynamic_cast<QPrintDialog*>(Form())->reject();
  });
  EXPECT_FALSE(printer.Choose(choice));
}

// A job ends without a page, as after a file that is in use.
TEST_F(ThePrintDialog, BeginsWithThePaperOfTheLastJob) {
  QList<QPageLayout> seen;
  QtPrinter kept(events, [&seen](QPrinter& to) {
    to.setOutputFormat(QPrinter::PdfFormat);
    seen << to.pageLayout();
    to.setPageSize(QPageSize(QPageSize::A5));
    to.setPageOrientation(QPageLayout::Landscape);
    return seen.size() != 2;  // the second time the user leaves
  });
  EXPECT_TRUE(kept.Choose(choice));
  static_cast<void>(kept.EndJob());
  EXPECT_FALSE(kept.Choose(choice));
  EXPECT_TRUE(kept.Choose(choice));
  ASSERT_EQ(seen.size(), 3);
  EXPECT_NE(seen[0].pageSize().id(), QPageSize::A5);
  for (const int job : {1, 2}) {
    EXPECT_EQ(seen[job].pageSize().id(), QPageSize::A5);
    EXPECT_EQ(seen[job].orientation(), QPageLayout::Landscape);
  }
}

// A file of that name in any case is that file.
TEST_F(ThePrintDialog, AsksForAFileThatIsSpelledInAnotherCase) {
  home.Write("Report.PDF", "old");
  Then("PrintDialog", [this] {
    ChoosePdf("report.pdf");
    QTimer::singleShot(0, Form(), [] { dynamic_cast<QPrintDialog*>(Form())->accept(); });
  });
  Then("ReplaceQuestion",
       [] { dynamic_cast<QMessageBox*>(Form())->button(QMessageBox::No)->click(); });
  Then("PrintDialog", [this] {
    ChoosePdf("REPORT.pdf");
    QTimer::singleShot(0, Form(), [] { dynamic_cast<QPrintDialog*>(Form())->accept(); });
  });
  Then("ReplaceQuestion",
       [] { dynamic_cast<QMessageBox*>(Form())->button(QMessageBox::Yes)->click(); });
  ASSERT_TRUE(printer.Choose(choice));
  EXPECT_EQ(choice.OutputFile, home.File("Report.PDF"));
  ASSERT_NE(printer.BeginPage(), nullptr);
  ASSERT_TRUE(printer.EndPage());
  EXPECT_TRUE(printer.EndJob());
  EXPECT_TRUE(home.Read("Report.PDF").starts_with("%PDF"));
  EXPECT_FALSE(home.Exists("report.pdf"));
  EXPECT_FALSE(home.Exists("REPORT.pdf"));
}

}  // namespace
}  // namespace tavrel
