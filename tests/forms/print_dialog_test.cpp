#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
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

}  // namespace
}  // namespace tavrel
