// Turns a manual's Markdown into a PDF: manual_pdf SOURCE.md TARGET.pdf
//
// Runs during the build, without a screen. The text stays text in the PDF.

#include <QFile>
#include <QGuiApplication>
#include <QMarginsF>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <cstdio>

namespace {

bool WritePdf(const QString& source, const QString& target) {
  QFile file(source);
  if (!file.open(QIODevice::ReadOnly)) {
    return false;
  }
  QTextDocument document;
  document.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
  document.setMarkdown(QString::fromUtf8(file.readAll()));

  QPdfWriter writer(target);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(QMarginsF(22, 20, 22, 20), QPageLayout::Millimeter);
  writer.setTitle(document.firstBlock().text());
  writer.setCreator(QStringLiteral("TAVREL"));
  document.print(&writer);
  return QFile(target).size() > 0;
}

}  // namespace

int main(int count, char** arguments) {
  QGuiApplication application(count, arguments);
  if (count != 3) {
    std::fputs("usage: manual_pdf SOURCE.md TARGET.pdf\n", stderr);
    return 2;
  }
  return WritePdf(QString::fromLocal8Bit(arguments[1]), QString::fromLocal8Bit(arguments[2])) ? 0
                                                                                              : 1;
}
