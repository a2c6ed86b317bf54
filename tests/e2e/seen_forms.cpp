// A library that is loaded into the program before it starts and writes down what a user at the
// keyboard looks at: which control has the keyboard, and the prompts of a form.
//
// One thing a line in the file that TAVREL_SEEN_FORMS names. A control is told by its object name.

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QLabel>

namespace {

void Keep(const QString& what, const QString& text) {
  QFile file(QString::fromLocal8Bit(qgetenv("TAVREL_SEEN_FORMS")));
  if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
    file.write((what + " " + text + "\n").toUtf8());
  }
}

class Watcher : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* object, QEvent* event) override {
    const bool is_widget = object->isWidgetType();
    if (event->type() == QEvent::FocusIn && is_widget) {
      Keep("keyboard", object->objectName());
    } else if (event->type() == QEvent::Paint && object->objectName() == "Lbl_Instr") {
      KeepPrompt(qobject_cast<QLabel*>(object));
    }
    return false;
  }

 private:
  void KeepPrompt(const QLabel* label) {
    if (label != nullptr && label->text() != prompt_) {
      prompt_ = label->text();
      Keep("prompt", prompt_);
    }
  }

  QString prompt_;
};

void Begin() {
  QCoreApplication::instance()->installEventFilter(new Watcher(QCoreApplication::instance()));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Begin)
