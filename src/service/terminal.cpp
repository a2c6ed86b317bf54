#include "service/terminal.h"

#include <algorithm>
#include <utility>

#include "files/buffers_last.h"
#include "link/reply.h"
#include "service/instrument_use.h"
#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr char kLineFeed = '\n';
constexpr char kBackspace = '\b';
constexpr std::string_view kSendAt = "\r?Zz<@[";   // typed last, the line is sent
constexpr std::string_view kAnsweredAt = "\r?<@";  // an instrument answers what ends so
constexpr std::string_view kAnswerEnds = "\r.?";   // the last character of each answer
constexpr std::chrono::milliseconds kAnswerTime{260};
constexpr std::chrono::seconds kReopenInterval{10};
constexpr std::size_t kMostWaiting = 1000;  // commands of a pasted text

constexpr BothLanguages kStandsStill{"The measuring cycle leaves the line alone meanwhile.",
                                     "Der Messzyklus lässt die Leitung solange in Ruhe."};
constexpr BothLanguages kProgramsWait{"controller programs that wait:  ",
                                      "Reglerprogramme, die warten:  "};

// The text that stays when each backspace has taken itself and the character before it away. Those
// at the very start take from the end of `before`.
std::string WithoutBackspaces(std::string_view text, std::string& before) {
  std::string kept;
  for (const char character : text) {
    if (character != kBackspace) {
      kept += character;
      continue;
    }
    std::string& shortened = kept.empty() ? before : kept;
    shortened = shortened.substr(0, std::max<std::size_t>(shortened.size(), 1) - 1);
  }
  return kept;
}

}  // namespace

void Terminal::Open() {
  OpenScreen();
  TermEcho = true;
  TermLine.clear();
  term_.clear();
  begun_.clear();
  waiting_.clear();
  is_asking_ = false;
  has_answered_ = true;
  reopen_at_ = {};
}

Language Terminal::TipLanguage() const {
  return LanguageOf(parts_.state.Settings.HelpLang);
}

std::string Terminal::lbl_State() const {
  std::string text(kStandsStill.In(TipLanguage()));
  for (const std::string& line :
       {BuffersLastText(parts_.engine, TipLanguage()), WaitingPrograms()}) {
    text += line.empty() ? "" : "\n" + line;
  }
  return text;
}

std::string Terminal::WaitingPrograms() const {
  std::string programs;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (parts_.state.ProgRunning[slot]) {
      programs += (programs.empty() ? "" : ",  ") + NameOfTest(parts_.state, slot);
    }
  }
  return programs.empty() ? "" : std::string(kProgramsWait.In(TipLanguage())) + programs;
}

// A key that is deleted again is not sent to an instrument.
void Terminal::KeyPress(char key) {
  if (!IsOpen() || is_asking_) {
    return;
  }
  if (TermEcho) {
    const char shown = key == kEscape ? kCarriageReturn : key;
    Receive(std::string_view(&shown, 1));
  }
  if (parts_.link.Simulated) {
    return;
  }
  if (key == kEscape) {
    TermLine.clear();
    waiting_.clear();
    begun_.clear();
    parts_.link.SendText(std::string_view(&kEscape, 1));
  } else if (key == kBackspace) {
    TermLine = TermLine.substr(0, std::max<std::size_t>(TermLine.size(), 1) - 1);
  } else {
    TermLine += key;
    if (kSendAt.find(key) != std::string_view::npos) {
      EndLine();
    }
  }
}

// The command that an instrument has got by then may have begun in the lines before.
void Terminal::EndLine() {
  const std::string line = TermLine;
  TermLine.clear();
  if (!MaySend(begun_ + line) || waiting_.size() >= kMostWaiting) {
    return;
  }
  const bool is_ended = kAnsweredAt.find(line.back()) != std::string_view::npos;
  waiting_.push_back({line, RegisterWriteIn(begun_ + line)});
  begun_ = is_ended ? "" : begun_ + line;
  SendWaiting();
}

bool Terminal::MaySend(const std::string& line) {
  const std::optional<BufferCommand> command = BufferCommandIn(line);
  const std::vector<int> slots =
      command ? SlotsThatRecord(parts_.state, command->Inet, command->Input) : std::vector<int>();
  if (slots.empty()) {
    return true;
  }
  if (!AskAbout(*command, slots) || !IsOpen()) {
    return false;
  }
  parts_.engine.DoubtInput(slots, command->Input);
  return true;
}

bool Terminal::AskAbout(const BufferCommand& command, const std::vector<int>& slots) {
  const Language language = UserLanguage(parts_.state);
  std::string inputs;
  for (const int slot : slots) {
    inputs += "\n" + service_text::kTestInput.Text(
                         language, {NameOfTest(parts_.state, slot), std::to_string(command.Input)});
  }
  const BothLanguages& question =
      command.IsRead ? service_text::kTakesValue : service_text::kClearsBuffer;
  const std::string text = question.Text(language, {inputs});
  is_asking_ = true;
  const bool is_wanted = parts_.dialogs.AskOk({text, "Terminal", BoxIcon::kWarning, true});
  is_asking_ = false;
  return is_wanted;
}

void Terminal::Paste(std::string_view text) {
  for (std::size_t place = 0; place < text.size(); ++place) {
    const bool is_end = text[place] == kLineFeed;
    if (is_end && place > 0 && text[place - 1] == kCarriageReturn) {
      continue;
    }
    KeyPress(is_end ? kCarriageReturn : text[place]);
  }
}

bool Terminal::AnswerMayCome() const {
  return !has_answered_ && parts_.clock.Elapsed() < answer_until_;
}

// Two commands at once would be answered on top of each other.
void Terminal::SendWaiting() {
  while (!AnswerMayCome()) {
    EndWrite(LinkResult::kTimeOut);
    if (waiting_.empty()) {
      return;
    }
    const Command command = waiting_.front();
    waiting_.pop_front();
    const bool is_sent = parts_.link.SendText(command.text);
    has_answered_ = !is_sent || kAnsweredAt.find(command.text.back()) == std::string_view::npos;
    answer_until_ = parts_.clock.Elapsed() + kAnswerTime;
    write_ = command.write;
    if (!is_sent) {
      EndWrite(LinkResult::kPortError);
    }
  }
}

void Terminal::TakeAcknowledge(std::string_view text) {
  write_answer_ += write_ ? text : "";
  if (const auto result = JudgeAck(write_answer_)) {
    EndWrite(*result);
  }
}

// Who looks on at the exchanges sees this one, too.
void Terminal::EndWrite(LinkResult result) {
  write_answer_.clear();
  if (const auto write = std::exchange(write_, std::nullopt)) {
    const std::string_view letter(&write->Letter, 1);
    parts_.link.Observed({write->Inet, letter, write->Index, write->Word, true, result});
  }
}

void Terminal::Poll() {
  if (!IsOpen()) {
    return;
  }
  const std::string text = parts_.link.TakeText();
  TakeAcknowledge(text);
  has_answered_ = has_answered_ || text.find_first_of(kAnswerEnds) != std::string::npos;
  Receive(text);
  SendWaiting();
  if (!parts_.link.PortOpen && parts_.clock.Elapsed() >= reopen_at_) {
    reopen_at_ = parts_.clock.Elapsed() + kReopenInterval;
    parts_.link.ReopenIfLost();
  }
}

void Terminal::Receive(std::string_view text) {
  if (!text.empty() && term_.size() >= kMostOfTerm) {
    term_.erase(0, kDroppedOfTerm);
  }
  for (const char character : WithoutBackspaces(text, term_)) {
    if (character != kLineFeed) {
      term_ += character;
      term_ += character == kCarriageReturn ? "\n" : "";
    }
  }
}

// A command that was only begun would spoil the next one of the cycle.
void Terminal::CloseNow() {
  if (!IsOpen()) {
    return;
  }
  if (!begun_.empty()) {
    parts_.link.SendText(std::string_view(&kEscape, 1));
  }
  parts_.link.EndText();
  EndWrite(LinkResult::kTimeOut);
  term_.clear();
  CloseScreen();
}

}  // namespace tavrel
