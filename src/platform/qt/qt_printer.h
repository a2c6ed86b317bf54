#ifndef TAVREL_PLATFORM_QT_QT_PRINTER_H_
#define TAVREL_PLATFORM_QT_QT_PRINTER_H_

#include <QBuffer>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/language.h"
#include "platform/printer.h"
#include "platform/qt/painter_surface.h"
#include "platform/qt/qt_events.h"

namespace tavrel {

// How the system's print dialog calls a printer that makes a PDF.
inline constexpr const char* kPdfPrinter = "Print to File (PDF)";

// The printers of the system, and PDF. On paper every page is a document of its own; the pages
// of a PDF are one file, which comes into being when the job is over, whole or not at all. Size and
// orientation of the paper are those of the last job.
class QtPrinter : public Printer {
 public:
  // Lets the user set up the printer; false: the user left.
  using SetUp = std::function<bool(QPrinter& printer)>;

  // Asks by the system's print dialog. `events` outlives this.
  explicit QtPrinter(QtEvents& events);
  QtPrinter(QtEvents& events, SetUp set_up);
  ~QtPrinter() override;

  // The language in which it is asked about a file that exists already; English without it.
  void SpeakIn(std::function<Language()> language) { language_ = std::move(language); }

  // Where these are kept between the runs of the program, as the sheet lies, in points: `last`
  // tells them, if there are any, `keep` takes those of each job. Without it they are forgotten at
  // the end.
  using LastPaper = std::function<std::optional<QSize>()>;
  using KeepPaper = std::function<void(QSize)>;
  void RememberPaper(LastPaper last, KeepPaper keep);

  [[nodiscard]] bool Choose(PrintChoice& choice) override;
  [[nodiscard]] Surface* BeginPage() override;
  [[nodiscard]] bool EndPage() override;
  [[nodiscard]] bool EndJob() override;

 private:
  [[nodiscard]] bool IsPdf() const;
  [[nodiscard]] std::string TakeFileName();
  [[nodiscard]] bool BeginPaper();
  [[nodiscard]] bool BeginPdf();
  void Forget();

  QtEvents& events_;
  std::function<Language()> language_ = [] { return Language::kEnglish; };
  SetUp set_up_;
  std::unique_ptr<QPrinter> printer_;  // of the job that is on
  std::optional<QPageLayout> layout_;  // size and orientation of the last job of this run
  LastPaper last_paper_ = [] { return std::nullopt; };
  KeepPaper keep_paper_ = [](QSize) {};
  QByteArray pdf_;
  std::unique_ptr<QBuffer> pdf_buffer_;
  std::unique_ptr<QPdfWriter> pdf_writer_;
  QPainter painter_;
  std::unique_ptr<PainterSurface> page_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_PRINTER_H_
