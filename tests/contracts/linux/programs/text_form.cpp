// The form of text_form.py in Qt 6:
//
//   text_form [TEXT]
#include <QApplication>
#include <QLineEdit>
#include <QMetaObject>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <iostream>
#include <map>
#include <string>
#include <thread>

namespace {

class Form final : public QWidget {
 public:
  explicit Form(const QString& content) : text_(content) {
    setWindowTitle("letter");
    resize(480, 400);
    lines_["line"].setPlaceholderText("Subject");
    lines_["search"].setPlaceholderText("Search");
    lines_["password"].setEchoMode(QLineEdit::Password);
    lines_["read-only"].setText("as it is");
    lines_["read-only"].setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&text_);
    for (auto& [name, line] : lines_) layout->addWidget(&line);
    text_.setFocus();
  }

  void obey(const std::string& command) {
    const std::string name = command.substr(0, command.find(' '));
    if (name == "text") return text_.setFocus();
    QLineEdit& line = lines_[name];
    line.setFocus();
    if (name.size() < command.size()) line.setText(command.substr(name.size() + 1).c_str());
  }

 private:
  QPlainTextEdit text_;
  std::map<std::string, QLineEdit> lines_;
};

}  // namespace

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  Form form(count > 1 ? QString::fromUtf8(arguments[1]) : QString());
  form.show();
  std::thread([&form] {
    for (std::string line; std::getline(std::cin, line);) {
      QMetaObject::invokeMethod(&form, [&form, line] { form.obey(line); });
    }
  }).detach();
  const int status = QApplication::exec();
  std::_Exit(status);  // the reader may wait for a line yet
}
