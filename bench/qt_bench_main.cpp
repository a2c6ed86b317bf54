#include <benchmark/benchmark.h>

#include <QApplication>

// Benchmarks that need the toolkit, without a screen.
int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
