// A library that is loaded into the program before it starts and writes down what the program
// tells its user: each notice and each box, as it stands in the widgets that are shown.
//
// One text a row in the file that TAVREL_SHOWN_TEXTS names, line breaks as "\n". A box that knows
// one answer only is answered, since nobody is there to do it.

#include <QAbstractItemModel>
#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QListWidget>
#include <QMessageBox>
#include <QTimer>

namespace {

void Keep(QString text) {
  const QByteArray path = qgetenv("TAVREL_SHOWN_TEXTS");
  QFile file(QString::fromLocal8Bit(path));
  if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
    file.write(text.replace("\n", "\\n").toUtf8() + "\n");
  }
}

class Watcher : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Show) {
      WatchBox(qobject_cast<QMessageBox*>(object));
      if (object->objectName() == "notices") {
        WatchList(object->findChild<QListWidget*>("list"));
      }
    }
    return false;
  }

 private:
  static void WatchBox(QMessageBox* box) {
    if (box == nullptr) {
      return;
    }
    const QString advice = box->informativeText();
    Keep(box->windowTitle() + "\n" + box->text() + (advice.isEmpty() ? "" : "\n\n" + advice));
    if (box->buttons().size() == 1) {
      QTimer::singleShot(0, box, &QDialog::accept);
    }
  }

  void WatchList(QListWidget* list) {
    if (list == nullptr || list == watched_) {
      return;
    }
    watched_ = list;
    KeepRows(list, 0, list->count() - 1);
    connect(list->model(), &QAbstractItemModel::rowsInserted, this,
            [list](const QModelIndex&, int first, int last) { KeepRows(list, first, last); });
  }

  static void KeepRows(const QListWidget* list, int first, int last) {
    for (int row = first; row <= last; ++row) {
      Keep(list->item(row)->text());
    }
  }

  const QListWidget* watched_ = nullptr;
};

void Begin() {
  QCoreApplication::instance()->installEventFilter(new Watcher(QCoreApplication::instance()));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Begin)
