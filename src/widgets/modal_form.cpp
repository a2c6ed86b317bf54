#include "widgets/modal_form.h"

#include <QAction>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "platform/qt/window_in_front.h"
#include "widgets/form_room.h"
#include "widgets/letters.h"
#include "widgets/muted_label.h"
#include "widgets/number_edit.h"

namespace tavrel {

ModalForm::ModalForm(ModalScreen& screen, const char* name, std::string_view caption)
    : QDialog(WindowInFront()), screen_(screen) {
  setObjectName(name);
  setWindowTitle(QtText(caption));
  setWindowModality(Qt::ApplicationModal);
}

void ModalForm::Run() {
  MarkLetters();
  UpdateWidgets();
  if (screen_.IsOpen()) {
    FitToScreen();
    TakePreferredSize();
    fitted_ = size();
    exec();
  }
}

void ModalForm::TakePreferredSize() {
  if (preferred_.isValid() && !IsFixed() && !isMaximized()) {
    resize(preferred_.boundedTo(RoomFor(*this)));
  }
}

void ModalForm::FitToScreen() {
  const QSize before = size();
  FitForm(*this, RoomFor(*this));
  if (size() != before) {
    fitted_ = size();
  }
  if (isVisible()) {
    KeepOnScreen(*this);
  }
}

bool ModalForm::HasUsersSize() const {
  return !IsFixed() && !isMaximized() && !isFullScreen() && size() != fitted_;
}

// The bar and the buttons share the keyboard of the form, the entries of a menu have it while that
// is open.
void ModalForm::MarkLetters() {
  Letters letters;
  if (QWidget* bar = layout() != nullptr ? layout()->menuBar() : nullptr) {
    for (QAction* action : bar->actions()) {
      letters.Mark(*action);
      Letters of_menu;
      for (QAction* entry :
           action->menu() != nullptr ? action->menu()->actions() : QList<QAction*>()) {
        of_menu.Mark(*entry);
      }
    }
  }
  for (QPushButton* button : buttons_) {
    letters.Mark(*button);
  }
}

// The frame around the first window of the program is known only when that is shown.
void ModalForm::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!event->spontaneous()) {
    auto* shown = new QTimer(this);
    shown->setSingleShot(true);
    shown->callOnTimeout(this, [this, shown] {
      shown->deleteLater();
      FitToScreen();
    });
    shown->start(0);
  }
}

// The contents ask for more than before.
bool ModalForm::event(QEvent* event) {
  const bool is_done = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest && isVisible()) {
    FitToScreen();
  }
  return is_done;
}

void ModalForm::reject() {
  screen_.Quit();
  AfterEvent();
}

void ModalForm::AfterEvent() {
  if (screen_.IsOpen()) {
    UpdateWidgets();
  } else {
    done(QDialog::Accepted);
  }
}

void ModalForm::ShowTips(std::span<const ToolTip> tips, Language language) {
  for (const ToolTip& tip : tips) {
    auto* control = findChild<QWidget*>(QtText(tip.Control));
    if (control != nullptr) {
      control->setToolTip(QtText(tip.Text.In(language)));
    }
  }
}

QPushButton* ModalForm::MakeButton(const char* name, const char* caption, Press press) {
  auto* button = new QPushButton(caption, this);
  if (*caption != '\0') {
    buttons_.push_back(button);
  }
  button->setObjectName(name);
  button->setAccessibleName(caption);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, press = std::move(press)] {
    press();
    AfterEvent();
  });
  return button;
}

QPushButton* ModalForm::MakeOk(Press press) {
  QPushButton* ok = MakeButton("CmdOK", "OK", std::move(press));
  ok->setDefault(true);
  return ok;
}

QPushButton* ModalForm::MakeCancel() {
  constexpr BothLanguages kCaption{"Cancel", "Abbrechen"};
  const QString caption = QtText(kCaption.In(screen_.TextLanguage()));
  return MakeButton("CmdCancel", caption.toUtf8(), [this] { screen_.Quit(); });
}

QHBoxLayout* ModalForm::MakeOkAndCancel(Press ok) {
  auto* line = new QHBoxLayout;
  line->addStretch(1);
  line->addWidget(MakeOk(std::move(ok)));
  line->addWidget(MakeCancel());
  return line;
}

GlyphButton* ModalForm::MakeGlyphButton(const QString& name, const char* spoken, Glyph glyph,
                                        Press press) {
  auto* button = new GlyphButton(glyph, this);
  button->setObjectName(name);
  button->setAccessibleName(spoken);
  button->SetToolSize();
  connect(button, &GlyphButton::clicked, this, [this, press = std::move(press)] {
    press();
    AfterEvent();
  });
  return button;
}

void ModalForm::AddEntry(QMenu& menu, const char* name, const char* caption, Press press,
                         const QKeySequence& shortcut) {
  QAction* action = menu.addAction(caption);
  action->setObjectName(name);
  action->setShortcut(shortcut);
  connect(action, &QAction::triggered, this, [this, press = std::move(press)] {
    press();
    AfterEvent();
  });
}

NumberEdit* ModalForm::AddNumberBox(QGridLayout& grid, int index, const QString& caption,
                                    Qt::Alignment alignment, Changed changed) {
  auto* label = new MutedLabel(caption, this);
  label->setObjectName(QString("Label_%1").arg(index));
  label->setTextFormat(Qt::PlainText);
  auto* box = new NumberEdit(QString("TBox_%1").arg(index), this);
  box->setAccessibleName(caption.simplified());
  label->setBuddy(box);
  connect(box, &QLineEdit::textEdited, this,
          [this, changed = std::move(changed)](const QString& text) {
            changed(text.toStdString());
            AfterEvent();
          });
  const int row = grid.rowCount();
  grid.addWidget(label, row, 0, alignment | Qt::AlignVCenter);
  grid.addWidget(box, row, 1);
  return box;
}

QVBoxLayout* ModalForm::MakeColumn(int margin) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(margin);
  return column;
}

QVBoxLayout* ModalForm::MakeFixedColumn(int margin) {
  QVBoxLayout* column = MakeColumn(margin);
  column->setSizeConstraint(QLayout::SetFixedSize);
  return column;
}

// An Enter key that is still held down from the window before presses nothing here.
void ModalForm::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && event->isAutoRepeat()) {
    event->accept();
    return;
  }
  if (event->matches(QKeySequence::HelpContents)) {
    emit HelpAsked();
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace tavrel
