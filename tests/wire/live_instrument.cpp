#include "tests/wire/live_instrument.h"

#include <sstream>

namespace tavrel {
namespace {

constexpr const char* kProgram = TAVREL_BUILD_DIRECTORY "/instrument/tavrel-instrument";
constexpr const char* kLog = "line.log";
constexpr std::chrono::seconds kPatience{2};
constexpr std::size_t kCodeLength = 3;  // "\0D"

// "\0D" is a carriage return again.
std::string Decoded(const std::string& text) {
  std::string bytes;
  for (std::size_t place = 0; place < text.size(); ++place) {
    if (text[place] == '\\' && place + kCodeLength <= text.size()) {
      bytes += static_cast<char>(std::stoi(text.substr(place + 1, 2), nullptr, 16));
      place += kCodeLength - 1;
    } else {
      bytes += text[place];
    }
  }
  return bytes;
}

}  // namespace

LiveInstrument::LiveInstrument(const TemporaryDirectory& home, bool plugin,
                               std::vector<std::string> options)
    : home_(home) {
  std::vector<std::string> command = {kProgram,
                                      "--mode",
                                      plugin ? "plugin" : "direct",
                                      "--link",
                                      home.File("COM1"),
                                      "--control",
                                      home.File("control"),
                                      "--truth",
                                      home.File("truth.txt"),
                                      "--log",
                                      home.File(kLog)};
  command.insert(command.end(), options.begin(), options.end());
  process_ = Process(command);
  is_up_ = process_.ReadLine(std::chrono::seconds(20)).starts_with("ready");
}

bool LiveInstrument::Tell(const std::string& command) const {
  return RunCommand({kProgram, "--send", home_.File("control"), command}) == 0;
}

std::string LiveInstrument::Status() const {
  Process client({kProgram, "--send", home_.File("control"), "status"});
  std::string status;
  for (std::string line = client.ReadLine(kPatience); !line.empty();
       line = client.ReadLine(kPatience)) {
    status += line + "\n";
  }
  return status;
}

void LiveInstrument::Forget() {
  forgotten_ += Rows().size();
}

// A row without its end is still being written.
std::vector<LiveInstrument::Row> LiveInstrument::Rows() const {
  const std::string log = home_.Read(kLog);
  std::istringstream lines(log.substr(0, log.rfind('\n') + 1));
  std::vector<Row> rows;
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    double seconds = 0;
    std::string direction;
    std::string text;
    fields >> seconds >> direction >> text;
    if (number++ >= forgotten_) {
      rows.push_back({seconds, direction == ">", Decoded(text)});
    }
  }
  return rows;
}

std::vector<std::string> LiveInstrument::Telegrams(std::size_t count) const {
  std::vector<std::string> telegrams;
  static_cast<void>(WaitUntil(
      [&] {
        telegrams.clear();
        for (const Row& row : Rows()) {
          if (row.from_host) {
            telegrams.push_back(row.text);
          }
        }
        return telegrams.size() >= count;
      },
      kPatience));
  return telegrams;
}

std::string LiveInstrument::LastReply(const std::string& command) const {
  const std::vector<Row> rows = Rows();
  std::string reply;
  for (std::size_t place = 1; place < rows.size(); ++place) {
    if (!rows[place].from_host && rows[place - 1].text == command) {
      reply = rows[place].text.substr(0, rows[place].text.find('\r'));
    }
  }
  return reply;
}

double LiveInstrument::LastTime(const std::string& command) const {
  double seconds = 0;
  for (const Row& row : Rows()) {
    seconds = row.from_host && row.text == command ? row.seconds : seconds;
  }
  return seconds;
}

}  // namespace tavrel
