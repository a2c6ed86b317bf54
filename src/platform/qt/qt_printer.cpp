#include "platform/qt/qt_printer.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinterInfo>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <algorithm>
#include <string_view>

#include "platform/file_system.h"
#include "platform/print_queues.h"
#include "platform/qt/box_texts.h"
#include "platform/qt/notice_box.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {
namespace {

constexpr int kPdfResolution = 1200;  // units to the inch

// The parts of the toolkit's dialog have no names but those of its widgets.
template <typename Widget>
Widget* PartOf(QPrintDialog& dialog, const char* name) {
  return dialog.findChild<Widget*>(name);
}

// The number of copies stands in a part of the dialog that a third button shows and hides.
void Unfold(QPrintDialog& dialog) {
  auto* const buttons = dialog.findChild<QDialogButtonBox*>();
  if (buttons == nullptr) {
    return;
  }
  for (QAbstractButton* const button : buttons->buttons()) {
    const auto role = buttons->buttonRole(button);
    if (role != QDialogButtonBox::AcceptRole && role != QDialogButtonBox::RejectRole) {
      button->click();
      button->hide();
    }
  }
}

// One page has neither parts nor an order. The dialog shows again what is only hidden, so these
// live on in a widget that is never shown.
void OfferCopiesOnly(QPrintDialog& dialog) {
  Unfold(dialog);
  auto* const never_shown = new QWidget(&dialog);
  never_shown->hide();
  for (const char* const name : {"gbPrintRange", "collate", "reverse", "outputIcon"}) {
    if (auto* const part = PartOf<QWidget>(dialog, name)) {
      part->setParent(never_shown);
    }
  }
  auto* const tabs = PartOf<QTabWidget>(dialog, "tabs");
  auto* const copies = PartOf<QWidget>(dialog, "copiesTab");
  if (tabs != nullptr && copies != nullptr) {
    tabs->setCurrentWidget(copies);
  }
}

// The dialog would leave the end of the document's name out, which is all that tells some of the
// recordings of a day apart.
void OfferFileName(QPrintDialog& dialog, const QString& document) {
  auto* const name = PartOf<QLineEdit>(dialog, "filename");
  if (name != nullptr && !document.isEmpty()) {
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const bool is_there = QFileInfo(directory).isDir();
    name->setText((is_there ? directory : QDir::homePath()) + '/' + document + ".pdf");
  }
}

// The dialog itself asks for the name as it is spelled.
bool MayReplace(QPrintDialog& dialog, const QString& path, Language language) {
  const auto existing = FindPath(path.toStdString());
  if (!existing || QString::fromStdString(*existing) == path) {
    return true;
  }
  NoticeBox box(
      {box_text::kReplace.Text(language, {*existing}), "Save As", BoxIcon::kWarning, true},
      QMessageBox::Yes, QMessageBox::No, &dialog);
  box.setObjectName("ReplaceQuestion");
  box.SpeakIn(language);
  return box.exec() == QMessageBox::Yes;
}

bool AskByDialog(QPrinter& printer, Language language) {
  QPrintDialog dialog(&printer, WindowInFront());
  dialog.setObjectName("PrintDialog");
  dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
  OfferCopiesOnly(dialog);
  OfferFileName(dialog, printer.docName());
  while (dialog.exec() == QDialog::Accepted) {
    const bool is_file = printer.outputFormat() == QPrinter::PdfFormat;
    if (!is_file || MayReplace(dialog, printer.outputFileName(), language)) {
      return true;
    }
  }
  return false;
}

PrinterInks InksOf(const QPrinter& printer) {
  const QPrinterInfo info = QPrinterInfo::printerInfo(printer.printerName());
  const auto modes = info.supportedColorModes();
  return {modes.isEmpty(), modes.contains(QPrinter::Color),
          info.defaultColorMode() == QPrinter::GrayScale};
}

void SetColours(QPrinter& printer, bool is_colour) {
  printer.setColorMode(is_colour ? QPrinter::Color : QPrinter::GrayScale);
}

// A printer that is gone leaves the system's own choice.
void Offer(QPrinter& printer, const std::string& name) {
  const QString wanted = QString::fromStdString(name);
  if (name == kPdfPrinter) {
    printer.setOutputFormat(QPrinter::PdfFormat);
  } else if (QPrinterInfo::availablePrinterNames().contains(wanted)) {
    printer.setPrinterName(wanted);
  }
  SetColours(printer, BeginsInColour(InksOf(printer)));
}

// `sheet` is as it lies, in points.
void UsePaper(QPrinter& printer, QSize sheet) {
  const bool is_wide = sheet.width() > sheet.height();
  const QSize upright = is_wide ? sheet.transposed() : sheet;
  printer.setPageSize(QPageSize(upright, {}, QPageSize::FuzzyMatch));
  printer.setPageOrientation(is_wide ? QPageLayout::Landscape : QPageLayout::Portrait);
}

}  // namespace

QtPrinter::QtPrinter(QtEvents& events)
    : QtPrinter(events, [this](QPrinter& printer) { return AskByDialog(printer, language_()); }) {}

QtPrinter::QtPrinter(QtEvents& events, SetUp set_up)
    : events_(events), set_up_(std::move(set_up)) {}

QtPrinter::~QtPrinter() {
  Forget();
}

void QtPrinter::RememberPaper(LastPaper last, KeepPaper keep) {
  last_paper_ = std::move(last);
  keep_paper_ = std::move(keep);
}

bool QtPrinter::IsPdf() const {
  return printer_->outputFormat() == QPrinter::PdfFormat;
}

bool QtPrinter::Choose(PrintChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  Forget();
  printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
  printer_->setDocName(QString::fromStdString(choice.Document));
  Offer(*printer_, choice.PrinterName);
  if (layout_) {
    printer_->setPageLayout(*layout_);
  } else if (const auto sheet = last_paper_()) {
    UsePaper(*printer_, *sheet);
  }
  if (!set_up_(*printer_)) {
    printer_.reset();
    return false;
  }
  layout_ = printer_->pageLayout();
  keep_paper_(layout_->fullRectPoints().size());
  choice.Copies = std::max(printer_->copyCount(), 1);
  printer_->setCopyCount(1);
  const bool is_chosen = printer_->colorMode() == QPrinter::Color;
  choice.IsColour = IsPdf() || GetsColours(InksOf(*printer_), is_chosen);
  SetColours(*printer_, choice.IsColour);
  choice.PrinterName = IsPdf() ? kPdfPrinter : printer_->printerName().toStdString();
  choice.OutputFile = IsPdf() ? TakeFileName() : "";
  return true;
}

// A file that is there already keeps the spelling of its name.
std::string QtPrinter::TakeFileName() {
  const std::string typed = printer_->outputFileName().toStdString();
  std::string path = FindPath(typed).value_or(typed);
  printer_->setOutputFileName(QString::fromStdString(path));
  return path;
}

Surface* QtPrinter::BeginPage() {
  if (!printer_ || !(IsPdf() ? BeginPdf() : BeginPaper())) {
    return nullptr;
  }
  const QPaintDevice& device = *painter_.device();
  const qreal units_per_point = device.logicalDpiY() / kPointsPerInch;
  const QRectF area(0, 0, device.width(), device.height());
  page_ = std::make_unique<PainterSurface>(painter_, area, units_per_point);
  page_->SetScale({0, 0, area.width() / units_per_point, area.height() / units_per_point});
  return page_.get();
}

bool QtPrinter::BeginPaper() {
  return painter_.begin(printer_.get());
}

bool QtPrinter::BeginPdf() {
  if (pdf_writer_) {
    return pdf_writer_->newPage();
  }
  pdf_buffer_ = std::make_unique<QBuffer>(&pdf_);
  if (!pdf_buffer_->open(QIODevice::WriteOnly)) {
    return false;
  }
  pdf_writer_ = std::make_unique<QPdfWriter>(pdf_buffer_.get());
  pdf_writer_->setResolution(kPdfResolution);
  pdf_writer_->setPageLayout(printer_->pageLayout());
  pdf_writer_->setTitle(printer_->docName());
  return painter_.begin(pdf_writer_.get());
}

bool QtPrinter::EndPage() {
  page_.reset();
  if (pdf_writer_) {
    return true;
  }
  return painter_.end() && printer_->printerState() != QPrinter::Error;
}

bool QtPrinter::EndJob() {
  if (!printer_ || !pdf_writer_) {
    Forget();
    return true;
  }
  page_.reset();
  const bool is_whole = painter_.isActive() && painter_.end();
  pdf_writer_.reset();
  const std::string path = printer_->outputFileName().toStdString();
  const std::string_view bytes(pdf_.constData(), static_cast<std::size_t>(pdf_.size()));
  const bool is_written = is_whole && ReplaceFile(path, bytes).empty();
  Forget();
  return is_written;
}

void QtPrinter::Forget() {
  page_.reset();
  if (painter_.isActive()) {
    painter_.end();
  }
  pdf_writer_.reset();
  pdf_buffer_.reset();
  pdf_.clear();
  printer_.reset();
}

}  // namespace tavrel
