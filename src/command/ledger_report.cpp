#include "command/ledger_report.h"

#include "files/ledger_text.h"
#include "platform/json.h"

namespace tavrel {
namespace {

JsonValue MostOf(const SetBounds& sets) {
  return sets.Most ? JsonValue(*sets.Most) : JsonValue();
}

JsonValue JsonOf(const SetBounds& sets) {
  return JsonValue::Members{{"least", sets.Least}, {"most", MostOf(sets)}};
}

JsonValue JsonOf(const LedgerLoss& loss) {
  return JsonValue::Members{
      {"before", loss.Before},     {"least", loss.Sets.Least},
      {"most", MostOf(loss.Sets)}, {"about", loss.About ? JsonValue(*loss.About) : JsonValue()},
      {"time", loss.Time},         {"what", loss.What}};
}

std::string Line(const std::string& name, const std::string& value) {
  return "\n  " + name + ": " + value;
}

}  // namespace

std::string LedgerWords(const LedgerFigures& figures) {
  std::string text = LedgerSummary(figures);
  if (!figures.IsKnown) {
    return text;
  }
  text += Line("recorded live", std::to_string(figures.Live)) +
          Line("fetched later", std::to_string(figures.Later)) +
          Line("filled", std::to_string(figures.Filled)) +
          Line("in question", std::to_string(figures.Questioned)) +
          Line("lost", BoundsText(figures.Lost));
  for (const LedgerLoss& loss : figures.Losses) {
    const std::string about = loss.About ? " (about " + std::to_string(*loss.About) + ")" : "";
    text += "\n    before row " + std::to_string(loss.Before) + ": " + BoundsText(loss.Sets) +
            about + ", noticed " + loss.Time + ": " + loss.What;
  }
  text += Line("in the instrument", figures.Waiting ? BoundsText(*figures.Waiting) : "unknown") +
          Line("expected", BoundsText(figures.Expected()));
  if (figures.Unwatched > 0) {
    text += Line("rows without a journal", std::to_string(figures.Unwatched));
  }
  return text;
}

std::string LedgerJson(const std::string& file, const LedgerFigures& figures,
                       const std::string& problem) {
  JsonValue::Members members{{"file", file}, {"rows", figures.Rows}};
  if (!problem.empty()) {
    members.emplace_back("damaged", problem);
  }
  if (!figures.IsKnown) {
    members.emplace_back("why", figures.Why);
    return JsonText(JsonValue(std::move(members))) + "\n";
  }
  JsonValue::List losses;
  for (const LedgerLoss& loss : figures.Losses) {
    losses.push_back(JsonOf(loss));
  }
  members.insert(members.end(),
                 {{"complete", figures.IsComplete()},
                  {"segments", figures.Segments},
                  {"unwatched", figures.Unwatched},
                  {"sets", figures.Recorded},
                  {"live", figures.Live},
                  {"later", figures.Later},
                  {"filled", figures.Filled},
                  {"question", figures.Questioned},
                  {"lost", JsonOf(figures.Lost)},
                  {"waiting", figures.Waiting ? JsonOf(*figures.Waiting) : JsonValue()},
                  {"expected", JsonOf(figures.Expected())},
                  {"losses", std::move(losses)}});
  return JsonText(JsonValue(std::move(members))) + "\n";
}

}  // namespace tavrel
