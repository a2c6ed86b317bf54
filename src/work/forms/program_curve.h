#ifndef TAVREL_WORK_FORMS_PROGRAM_CURVE_H_
#define TAVREL_WORK_FORMS_PROGRAM_CURVE_H_

#include <QWidget>
#include <vector>

#include "base/language.h"
#include "work/program_profile.h"

namespace tavrel {

// The profile of a program as a small curve, with its highest and lowest temperature and its
// length. Nothing but its name while the program has no step.
class ProgramCurve : public QWidget {
  Q_OBJECT
 public:
  ProgramCurve(Language language, QWidget* parent);

  void Show(const std::vector<ProfilePiece>& pieces);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRectF Room() const;
  void DrawPieces(QPainter& painter) const;
  void DrawTexts(QPainter& painter) const;

  std::vector<ProfilePiece> pieces_;
  double lowest_ = 0;
  double highest_ = 0;
  double minutes_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_PROGRAM_CURVE_H_
