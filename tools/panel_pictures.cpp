// quillo-panel-pictures FOLDER [GROUP]: shows each state of the panels on this display, in both
// colour schemes, and writes a picture of each; or those of one group alone (status, toasts,
// reviews, keyboard, alerts, form). The panels and their logic are the program's own.
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/dictation_state.h"
#include "hosts/linux/posix/console_system_log.h"
#include "hosts/linux/qt/qt_alerts.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_main_thread.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/qt/qt_windows.h"
#include "hosts/simulated/simulated_desktop.h"
#include "shell/review/review_panel.h"
#include "shell/status/dictation_hud.h"
#include "shell/toast/toast_panel.h"
#include "simulation/world/sample_form.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// What the status panel is pictured with.
struct Status {
  const char* name;
  const char* text;
  bool isRecording = false;
  bool isProcessing = false;
  const char* error = nullptr;
  bool canRetry = false;
  float loudness = 0;
};
constexpr Status statusStates[] = {
    {.name = "listening-quiet", .text = "Listening", .isRecording = true, .loudness = 0.1f},
    {.name = "listening-medium", .text = "Listening", .isRecording = true, .loudness = 0.36f},
    {.name = "listening-loud", .text = "Listening", .isRecording = true, .loudness = 0.95f},
    {.name = "limit-reached",
     .text = "10-min limit reached",
     .isRecording = true,
     .loudness = 0.6f},
    {.name = "transcribing", .text = "Transcribing", .isProcessing = true},
    {.name = "polishing", .text = "Polishing", .isProcessing = true},
    {.name = "inserted", .text = "Inserted"},
    {.name = "copied", .text = "Copied — auto-paste off"},
    {.name = "retrying", .text = "Retrying", .isProcessing = true, .canRetry = true},
    {.name = "no-microphone",
     .text = "Microphone permission needed",
     .error = "Enable microphone access in System Settings."},
    {.name = "sign-in", .text = "Sign in to dictate", .error = "Opening sign-in…"},
    {.name = "no-start",
     .text = "Could not start recording",
     .error = "Failed to start microphone recording."},
    {.name = "too-short", .text = "Ready", .error = "Recording was too short."},
    {.name = "no-speech", .text = "Ready", .error = "No speech was detected."},
    {.name = "timed-out",
     .text = "Request timed out",
     .error = "Request timed out. Please try again.",
     .canRetry = true},
    {.name = "connection",
     .text = "Connection problem",
     .error = "No internet connection. Check Wi-Fi or cellular data.",
     .canRetry = true},
    {.name = "too-large",
     .text = "Recording too large",
     .error = "The recording exceeds the maximum size.",
     .canRetry = true},
    {.name = "sign-in-required",
     .text = "Sign in required",
     .error = "Please sign in to continue.",
     .canRetry = true},
    {.name = "no-speech-heard",
     .text = "No speech detected",
     .error = "The service heard no speech.",
     .canRetry = true},
    {.name = "other-failure",
     .text = "Couldn't transcribe",
     .error = "Something went wrong. Please try again.",
     .canRetry = true},
    {.name = "long-failure",
     .text = "Couldn't transcribe",
     .error = "The speech service could not read this recording. It was kept on this computer, "
              "and it can be sent again as often as you like until it is understood.",
     .canRetry = true},
    {.name = "copied-no-access",
     .text = "Copied to clipboard",
     .error = "Text was copied. Turn on Accessibility access for Quillo to paste "
              "automatically."},
    {.name = "copied-no-target",
     .text = "Copied to clipboard",
     .error = "Text was copied. Click where you want it, then use Paste Last Result from the "
              "menu bar."},
    {.name = "copied-secure-input",
     .text = "Copied to clipboard",
     .error = "Text was copied. Secure keyboard entry is on (a password field, or an app like "
              "Terminal or a password manager), so macOS blocks auto-paste — press Cmd+V to "
              "paste it."},
    {.name = "inserted-raw",
     .text = "Inserted",
     .error = "Couldn't polish the text — inserted the raw transcription."},
    {.name = "pasting-raw",
     .text = "Pasting",
     .isProcessing = true,
     .error = "Couldn't translate — inserted your original words. Please try again."},
};

// Something for a panel to lie on.
class Backdrop final : public QRasterWindow {
 public:
  Backdrop() {
    setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
             Qt::WindowTransparentForInput);
    setGeometry(QGuiApplication::primaryScreen()->geometry());
  }
  void show(Appearance appearance) {
    isDark_ = appearance == Appearance::dark;
    QRasterWindow::show();
    lower();
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QLinearGradient sky(0, 0, width(), height());
    sky.setColorAt(0, isDark_ ? QColor(24, 34, 66) : QColor(178, 208, 242));
    sky.setColorAt(0.55, isDark_ ? QColor(58, 44, 92) : QColor(206, 214, 246));
    sky.setColorAt(1, isDark_ ? QColor(110, 56, 84) : QColor(250, 214, 196));
    painter.fillRect(QRect(0, 0, width(), height()), sky);
  }

 private:
  bool isDark_ = false;
};

class Pictures {
 public:
  Pictures(std::string folder, std::string only)
      : folder_(std::move(folder)), only_(std::move(only)) {
    hud_.follow(
        dictation_,
        {.cancelProcessing = [] {}, .retryLastRecording = [] {}, .dismissLastFailure = [] {}});
  }

  void run() {
    start(mainThread_, playAll());
    QApplication::exec();
  }

 private:
  Task<> playAll() {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
      scheme_ = appearance == Appearance::dark ? "dark" : "light";
      application_.setAppearance(appearance);
      backdrop_.show(appearance);
      co_await sleepFor(300ms);
      for (const auto& [group, play] : groups)
        if (only_.empty() || only_ == group) co_await (this->*play)();
    }
    QApplication::quit();
  }

  // --- The status panel ---

  Task<> playStatus() {
    for (const Status& state : statusStates) co_await play(state);
  }

  Task<> play(Status state) {
    dictation_.isRecording = state.isRecording;
    dictation_.isProcessing = state.isProcessing;
    dictation_.statusText = state.text;
    dictation_.lastError = state.error ? std::optional<std::string>(state.error) : std::nullopt;
    dictation_.canRetryLast = state.canRetry;
    hud_.show();
    for (int i = 0; state.isRecording && i < 64; ++i) {
      // Syllables.
      const float syllable = 0.55f + 0.45f * std::sin(static_cast<float>(i) * 0.55f) *
                                         std::cos(static_cast<float>(i) * 0.23f);
      dictation_.audioLevel = state.loudness * syllable;
      co_await sleepFor(10ms);
    }
    co_await sleepFor(400ms);
    take(std::string("status-") + state.name);
    hud_.hideNow();
    co_await sleepFor(30ms);
  }

  // --- The others ---

  Task<> playToasts() {
    for (const auto& [name, text] :
         {std::pair{"short", "OK"},
          {"profile", "Work mail · Improve"},
          {"languages", "English (United Kingdom) → Portuguese (Brazil)"},
          {"busy", "⌃G is already in use — pick another in Settings"},
          {"long",
           "A profile whose owner gave it a very long name, longer than any screen is wide, since "
           "nothing kept him from writing down what it is for, whom it is for, and when he means "
           "to use it next"}}) {
      toast_.showToast(text);
      co_await sleepFor(300ms);
      take(std::string("toast-") + name);
    }
    co_await sleepFor(2s);
  }

  struct Review {
    std::string name;
    ReviewRequest request;
    bool escInserts = false;
  };
  Task<> playReviews() {
    std::string longText;
    for (int i = 0; i < 12; ++i)
      longText += "We meet at nine in the small room on the second floor, and bring the figures. ";
    const std::vector<Review> reviews = {
        {"matches",
         {"Could we move our meeting to Thursday at ten?", "English",
          "Could we postpone our meeting to Thursday at ten?",
          "Könnten wir unser Treffen auf Donnerstag um zehn verschieben?", "German"}},
        {"differs",
         {"The cheque bounced, so please give me a ring.", "English",
          "The control jumped, therefore hand me jewellery.",
          "La comprobación rebotó, así que dame un anillo.", "Spanish"},
         true},
        {"plain", {"See you soon.", "Auto", "", "À bientôt.", "French"}},
        {"long", {longText, "English", longText, longText, "English (United Kingdom)"}},
    };
    for (const Review& review : reviews) {
      appState_.escInserts = review.escInserts;
      const auto reviewing = start(mainThread_, review_.present(review.request));
      co_await sleepFor(500ms);
      take("review-" + review.name);
      closeDialogs();
      co_await reviewing.value();
    }
  }

  // Which button the keyboard is at.
  Task<> playKeyboard() {
    const auto reviewing = start(
        mainThread_, review_.present({"See you soon.", "English", "", "À bientôt.", "French"}));
    co_await sleepFor(500ms);
    press(Qt::Key_Tab);
    co_await sleepFor(200ms);
    take("review-keyboard");
    closeDialogs();
    co_await reviewing.value();
  }

  Task<> playAlerts() {
    static const std::pair<const char*, Alerts::Alert> alerts[] = {
        {"plan-limit",
         {"Plan limit reached",
          "You've used today's free minutes. Upgrade your plan or try again tomorrow.",
          {"View Plans", "Not now"}}},
        {"device-limit",
         {"This Mac's free limit reached",
          "You've reached your plan limit. Upgrade your plan or try again later.",
          {"View Plans", "Not now"}}},
        {"selection-bubble",
         {"New: edit any text, anywhere",
          "Select text in any app — a small Fix / Improve / Translate bar appears over it and "
          "rewrites it in place. It follows your custom instructions, and you can summon it on "
          "the current selection any time with ⌃⌥E.\n\nTurn it on? (You can change this later in "
          "Settings → Selection edit bubble.)",
          {"Turn it on", "Not now"}}},
    };
    for (const auto& [name, alert] : alerts) {
      const Timer look(mainThread_, 600ms, [this, file = std::string("alert-") + name] {
        take(file);
        closeDialogs();
      });
      alerts_.runModal(alert);
    }
    co_return;
  }

  // --- Forms ---

  Task<> playForm() {
    appState_.dictionaryVocabulary = {"Quillo", "Murmex", "Þingvellir"};
    appState_.dictionaryReplacements = DictionaryList::List{};
    appState_.activationMode = "toggle";
    sim::SampleForm sample(appState_);
    const auto window =
        windows_.make({"quillo-pictures", "Quillo", {880, 600}, {880, 640}}, sample.form());
    window->makeKeyAndOrderFront();
    sample.level() = 0.62f;
    co_await sleepFor(600ms);
    take("form-top");
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    co_await sleepFor(300ms);
    take("form-menu");
    press(Qt::Key_Escape);
    appState_.noiseReduction = false;
    changeRow(sample, "name", "Ada Lovelace");
    changeRow(sample, "email", "ada.example.org");
    co_await sleepFor(100ms);
    // On to the last row.
    for (int i = 0; i < 13; ++i) press(Qt::Key_Tab);
    co_await sleepFor(300ms);
    take("form-bottom");
    appState_.noiseReduction = true;

    forms::Form sheet(
        {.title = "Delete everything?",
         .sections = {
             {.rows = {{.id = "why",
                        .kind = forms::Note{"All that is kept here goes, and cannot be "
                                            "brought back."}}}},
             {.rows = {{.id = "delete",
                        .kind = forms::Button{"Delete", [] {}, forms::ButtonStyle::destructive}},
                       {.id = "keep",
                        .kind = forms::Button{"Keep", [] {}, forms::ButtonStyle::prominent}}}}}});
    window->beginSheet(sheet);
    co_await sleepFor(300ms);
    take("form-sheet");
    window->endSheet();
  }
  static void changeRow(sim::SampleForm& sample, const char* id, const char* text) {
    controlWithId(sample.form(), id)->change(std::string(text));
  }
  static void press(Qt::Key key) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, Qt::NoModifier);
      QCoreApplication::sendEvent(QGuiApplication::focusWindow(), &event);
    }
  }

  void closeDialogs() {
    for (QWindow* const window : QGuiApplication::topLevelWindows())
      if (window->isVisible() && window->type() == Qt::Dialog) window->close();
  }

  // The windows that are shown, with some of what lies around them.
  void take(const std::string& name) {
    constexpr int around = 28;
    QRect area;
    for (const QWindow* const window : QGuiApplication::topLevelWindows())
      if (window->isVisible() && window != &backdrop_) area |= window->frameGeometry();
    area.adjust(-around, -around, around, around);
    const QScreen* const screen = QGuiApplication::primaryScreen();
    area &= screen->geometry();
    const QString file = QString::fromStdString(folder_ + "/" + name + "-" + scheme_ + ".png");
    const QPixmap picture = const_cast<QScreen*>(screen)->grabWindow(0, area.x(), area.y(),
                                                                     area.width(), area.height());
    if (!picture.save(file)) std::fprintf(stderr, "%s cannot be written\n", qPrintable(file));
  }

  using Play = Task<> (Pictures::*)();
  static constexpr std::pair<std::string_view, Play> groups[] = {
      {"status", &Pictures::playStatus},   {"toasts", &Pictures::playToasts},
      {"reviews", &Pictures::playReviews}, {"keyboard", &Pictures::playKeyboard},
      {"alerts", &Pictures::playAlerts},   {"form", &Pictures::playForm},
  };

  std::string folder_;
  std::string only_;
  const char* scheme_ = "";
  linux_host::ConsoleSystemLog systemLog_;
  linux_host::QtMainThread mainThread_{systemLog_};
  views::QuickViews views_;
  linux_host::QtScreens screens_;
  linux_host::QtPanels panels_{views_};
  linux_host::QtAlerts alerts_{panels_, screens_};
  Backdrop backdrop_;

  // What is not seen.
  simulated::SimulatedDesktop desktop_;
  linux_host::QtWindows windows_{views_, desktop_.userDefaults(), screens_};
  linux_host::QtApplication application_{{}, mainThread_, &windows_};
  MacAppState appState_{mainThread_,       desktop_.userDefaults(), desktop_.clock(),
                        desktop_.random(), desktop_.machine(),      desktop_.loginItem(),
                        application_,      desktop_.log()};
  DictationState dictation_;
  MacDictationHUD hud_{mainThread_, panels_, screens_, [] { return "Ctrl+Option+Space"; }};
  ToastPanel toast_{mainThread_, panels_, screens_};
  MacReviewPanel review_{mainThread_, panels_, screens_, application_, appState_};
};

}  // namespace
}  // namespace quillo

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  if (count != 2 && count != 3) {
    std::fprintf(stderr, "quillo-panel-pictures FOLDER [GROUP]\n");
    return 2;
  }
  quillo::Pictures(arguments[1], count == 3 ? arguments[2] : "").run();
}
