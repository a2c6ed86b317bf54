#include "setup/channel_sheet.h"

#include <algorithm>
#include <array>

#include "base/number.h"
#include "base/units.h"
#include "link/registers.h"
#include "setup/calibration.h"
#include "setup/linearisation.h"
#include "state/run_state.h"

namespace tavrel {
namespace {

constexpr double kDegreesPerReferenceStep = 0.01;
constexpr const char* kActualMask = "####0.00";
constexpr const char* kDivisorMask = "##0.0000";
constexpr std::int16_t kFastKind = 1;    // register T of row 0: sampling times are in seconds
constexpr int kSecondsPerSampling = 10;  // on all other instruments
// One failure must not leave a cell empty, and a late reply makes the next exchange fail as well,
// so a register is tried more than once; but a silent instrument is not asked for each register.
constexpr Patience kPatienceOfSheet{3, 3};

std::vector<RegisterOfRow> RowsOf(const char* letter, int first_row) {
  std::vector<RegisterOfRow> registers;
  for (int row = first_row; row < kChannelRows; ++row) {
    registers.push_back({letter, row});
  }
  return registers;
}

}  // namespace

std::string SensorName(int code) {
  switch (code) {
    case sensor::kNone:
      return "------";
    case sensor::kLinear:
      return "Linear";
    case sensor::kRtd:
      return "RTD";
    case sensor::kFeCuNi:
      return "FeCuNi";
    case sensor::kNiCrNi:
      return "NiCrNi";
    default:
      return "?";
  }
}

void ChannelSheet::Clear() {
  Drop();
  values_.Sheet = {};
  for (Column* column : {&sensors_, &sampling_, &offsets_, &wholes_, &parts_}) {
    column->Fill(std::nullopt);
  }
}

void ChannelSheet::Select(int row, int sensor_code) {
  Row(row).sensor = SensorName(sensor_code);
  Row(row).selected = true;
}

void ChannelSheet::Deselect(int row) {
  Row(row).selected = false;
}

std::vector<int> ChannelSheet::SelectedRows() const {
  std::vector<int> rows;
  for (int row = 1; row < kChannelRows; ++row) {
    if (values_.Sheet[row].selected) {
      rows.push_back(row);
    }
  }
  return rows;
}

ByRow<ChannelWords> ChannelSheet::Words() const {
  ByRow<ChannelWords> words;
  for (int row = 0; row < kChannelRows; ++row) {
    words[row] = {wholes_[row], parts_[row], sensors_[row], offsets_[row]};
  }
  return words;
}

std::optional<std::int16_t> ChannelSheet::SensorCode(int row) const {
  return sensors_[row];
}

ChannelSheet::Column* ChannelSheet::ColumnOf(const std::string& letter) {
  const std::array<std::pair<const char*, Column*>, 5> columns = {
      {{reg::kSensorCode, &sensors_},
       {reg::kSampling, &sampling_},
       {reg::kOffset, &offsets_},
       {reg::kDivisorWhole, &wholes_},
       {reg::kDivisorFraction, &parts_}}};
  for (const auto& [name, column] : columns) {
    if (letter == name) {
      return column;
    }
  }
  return nullptr;
}

bool ChannelSheet::ReadColumns(const std::vector<RegisterOfRow>& registers, const StepTime& time) {
  if (!is_reading_) {
    std::vector<ExchangePass::Item> items;
    items.reserve(registers.size());
    for (const RegisterOfRow& at : registers) {
      items.push_back({at});
    }
    pass_.Begin(std::move(items), kPatienceOfSheet);
    is_reading_ = true;
  }
  const auto take = [this](const RegisterOfRow& at, std::optional<std::int16_t> word) {
    Take(at, word);
  };
  is_reading_ = !pass_.Step(link_, inet_, time, take);
  return !is_reading_;
}

bool ChannelSheet::ReadSensors(const StepTime& time) {
  if (!is_reading_) {
    BeginSensors();
  }
  std::vector<RegisterOfRow> registers = RowsOf(reg::kSensorCode, 0);
  registers.push_back({reg::kKind, kReferenceRow});
  return ReadColumns(registers, time);
}

void ChannelSheet::BeginSensors() {
  adj_shown_y_.Fill(kNoData);
  adj_shown_r_.Fill(kNoData);
  for (ChannelRow& row : values_.Sheet) {
    row.actual.clear();
    row.buffer.clear();
  }
}

bool ChannelSheet::ReadSampling(const StepTime& time) {
  return ReadColumns(RowsOf(reg::kSampling, 1), time);
}

bool ChannelSheet::ReadOffsets(const StepTime& time) {
  return ReadColumns(RowsOf(reg::kOffset, 0), time);
}

bool ChannelSheet::ReadDivisors(const StepTime& time) {
  std::vector<RegisterOfRow> registers;
  for (int row = 0; row < kChannelRows; ++row) {
    registers.push_back({reg::kDivisorWhole, row});
    registers.push_back({reg::kDivisorFraction, row});
  }
  return ReadColumns(registers, time);
}

bool ChannelSheet::ReadActual(const StepTime& time) {
  return ReadColumns(RowsOf(reg::kPresentValue, 0), time);
}

bool ChannelSheet::ReadBuffers(const StepTime& time) {
  const bool is_over = ReadColumns(RowsOf(reg::kBuffered, 1), time);
  if (is_over) {
    missing_ = Missing();
  }
  return is_over;
}

std::vector<RegisterOfRow> ChannelSheet::Missing() {
  std::vector<RegisterOfRow> missing;
  if (!adj_min_sampling_) {
    missing.push_back({reg::kKind, kReferenceRow});
  }
  for (const char* letter : {reg::kSensorCode, reg::kSampling, reg::kOffset, reg::kDivisorWhole,
                             reg::kDivisorFraction}) {
    const Column& column = *ColumnOf(letter);
    for (int row = letter == std::string(reg::kSampling) ? 1 : 0; row < kChannelRows; ++row) {
      if (!column[row]) {
        missing.push_back({letter, row});
      }
    }
  }
  return missing;
}

void ChannelSheet::ReadMissing(const StepTime& time) {
  if (!is_reading_) {
    if (missing_.empty() || !link_.IsGood(inet_)) {
      return;
    }
    const RegisterOfRow next = missing_.front();
    missing_.erase(missing_.begin());
    static_cast<void>(ReadColumns({next}, time));
    return;
  }
  static_cast<void>(ReadColumns({}, time));
}

void ChannelSheet::Take(const RegisterOfRow& at, std::optional<std::int16_t> word) {
  const std::string letter = at.letter;
  if (letter == reg::kPresentValue) {
    TakeActual(at.row, word.value_or(kNoData));
  } else if (letter == reg::kBuffered) {
    TakeBuffered(at.row, word.value_or(kNoData));
  } else if (letter == reg::kKind) {
    adj_min_sampling_ = word ? word : adj_min_sampling_;
    for (int row = 1; row < kChannelRows; ++row) {
      ShowRow(row);
    }
  } else if (Column* column = ColumnOf(letter)) {
    (*column)[at.row] = word;
    ShowRow(at.row);
  }
}

void ChannelSheet::ShowRow(int row) {
  ChannelRow& shown = Row(row);
  shown.sensor = sensors_[row] ? SensorName(*sensors_[row]) : "";
  const int seconds = adj_min_sampling_ == kFastKind ? 1 : kSecondsPerSampling;
  shown.sampling = sampling_[row] ? std::to_string(*sampling_[row] * seconds) : "";
  shown.offset = offsets_[row] ? std::to_string(*offsets_[row]) : "";
  const bool is_divided = wholes_[row] && parts_[row];
  shown.gain =
      is_divided ? FormatMask(ShownDivisor({*wholes_[row], *parts_[row]}), kDivisorMask) : "";
}

void ChannelSheet::TakeActual(int row, std::int16_t word) {
  std::int16_t& shown = adj_shown_y_[row];
  if (word == shown) {
    return;
  }
  shown = word;
  const double per_step = row == kReferenceRow ? kDegreesPerReferenceStep : kDegreesPerStep;
  Row(row).actual = word == kNoData ? "" : FormatMask(word * per_step, kActualMask);
}

void ChannelSheet::TakeBuffered(int row, std::int16_t word) {
  std::int16_t& shown = adj_shown_r_[row];
  if (word == shown) {
    return;
  }
  shown = word;
  Row(row).buffer = word == kNoData ? "" : std::to_string(word);
}

}  // namespace tavrel
