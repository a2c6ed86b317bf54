#include "platform/qt/qt_printer.h"

#include <QPrintDialog>
#include <QPrinterInfo>
#include <algorithm>
#include <string_view>

#include "platform/file_system.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {
namespace {

constexpr qreal kPointsPerInch = 72;
constexpr int kPdfResolution = 1200;  // units to the inch

// One printer and a number of copies; the choice of pages would be one of one.
bool AskByDialog(QPrinter& printer) {
  QPrintDialog dialog(&printer, WindowInFront());
  dialog.setObjectName("PrintDialog");
  dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
  return dialog.exec() == QDialog::Accepted;
}

// A printer that is gone leaves the system's own choice.
void Offer(QPrinter& printer, const std::string& name) {
  const QString wanted = QString::fromStdString(name);
  if (name == kPdfPrinter) {
    printer.setOutputFormat(QPrinter::PdfFormat);
  } else if (QPrinterInfo::availablePrinterNames().contains(wanted)) {
    printer.setPrinterName(wanted);
  }
}

}  // namespace

QtPrinter::QtPrinter(QtEvents& events) : QtPrinter(events, AskByDialog) {}

QtPrinter::QtPrinter(QtEvents& events, SetUp set_up)
    : events_(events), set_up_(std::move(set_up)) {}

QtPrinter::~QtPrinter() {
  Forget();
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
  if (!set_up_(*printer_)) {
    printer_.reset();
    return false;
  }
  choice.Copies = std::max(printer_->copyCount(), 1);
  printer_->setCopyCount(1);
  choice.IsColour = IsPdf() || printer_->colorMode() == QPrinter::Color;
  choice.PrinterName = IsPdf() ? kPdfPrinter : printer_->printerName().toStdString();
  choice.OutputFile = IsPdf() ? printer_->outputFileName().toStdString() : "";
  return true;
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
