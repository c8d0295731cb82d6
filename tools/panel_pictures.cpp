// quillo-panel-pictures FOLDER [GROUP]: shows each state of the panels on this display, in both
// colour schemes, and writes a picture of each; or those of one group alone (status, toasts,
// reviews, keyboard, alerts, form,
// bubble). The panels and their logic are the program's own.
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>
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
#include "input/shortcut_model.h"
#include "shell/bubble/bubble_toolbar.h"
#include "shell/bubble/field_badge_panel.h"
#include "shell/bubble/selection_bubble_panel.h"
#include "shell/review/review_panel.h"
#include "shell/status/dictation_hud.h"
#include "shell/toast/toast_panel.h"
#include "simulation/world/sample_form.h"
#include "state/cycle_hot_key_preset.h"
#include "state/language_labels.h"
#include "state/writing_material.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// What the status panel is pictured with.
struct Status {
  const char* name;
  Literal text;
  bool isRecording = false;
  bool isProcessing = false;
  Literal error = {};
  bool canRetry = false;
  float loudness = 0;
};
constexpr Status statusStates[] = {
    {.name = "listening-quiet", .text = words("Listening"), .isRecording = true, .loudness = 0.1f},
    {.name = "listening-medium",
     .text = words("Listening"),
     .isRecording = true,
     .loudness = 0.36f},
    {.name = "listening-loud", .text = words("Listening"), .isRecording = true, .loudness = 0.95f},
    {.name = "limit-reached",
     .text = words("10-min limit reached"),
     .isRecording = true,
     .loudness = 0.6f},
    {.name = "transcribing", .text = words("Transcribing"), .isProcessing = true},
    {.name = "polishing", .text = words("Polishing"), .isProcessing = true},
    {.name = "inserted", .text = words("Inserted")},
    {.name = "copied", .text = words("Copied — auto-paste off")},
    {.name = "retrying", .text = words("Retrying"), .isProcessing = true, .canRetry = true},
    {.name = "no-microphone",
     .text = words("Microphone permission needed"),
     .error = words("Enable microphone access in System Settings.")},
    {.name = "sign-in", .text = words("Sign in to dictate"), .error = words("Opening sign-in…")},
    {.name = "no-start",
     .text = words("Could not start recording"),
     .error = words("Failed to start microphone recording.")},
    {.name = "too-short", .text = words("Ready"), .error = words("Recording was too short.")},
    {.name = "no-speech", .text = words("Ready"), .error = words("No speech was detected.")},
    {.name = "timed-out",
     .text = words("Request timed out"),
     .error = words("Request timed out. Please try again."),
     .canRetry = true},
    {.name = "connection",
     .text = words("Connection problem"),
     .error = words("No internet connection. Check Wi-Fi or cellular data."),
     .canRetry = true},
    {.name = "too-large",
     .text = words("Recording too large"),
     .error = words("The recording exceeds the maximum size."),
     .canRetry = true},
    {.name = "sign-in-required",
     .text = words("Sign in required"),
     .error = words("Please sign in to continue."),
     .canRetry = true},
    {.name = "no-speech-heard",
     .text = words("No speech detected"),
     .error = words("The service heard no speech."),
     .canRetry = true},
    {.name = "other-failure",
     .text = words("Couldn't transcribe"),
     .error = words("Something went wrong. Please try again."),
     .canRetry = true},
    {.name = "long-failure",
     .text = words("Couldn't transcribe"),
     .error =
         words("The speech service could not read this recording. It was kept on this computer, "
               "and it can be sent again as often as you like until it is understood."),
     .canRetry = true},
    {.name = "copied-no-access",
     .text = words("Copied to clipboard"),
     .error = words("Text was copied. Turn on Accessibility access for Quillo to paste "
                    "automatically.")},
    {.name = "copied-no-target",
     .text = words("Copied to clipboard"),
     .error = words("Text was copied. Click where you want it, then use Paste Last Result from the "
                    "menu bar.")},
    {.name = "copied-secure-input",
     .text = words("Copied to clipboard"),
     .error =
         words("Text was copied. Secure keyboard entry is on (a password field, or an app like "
               "Terminal or a password manager), so macOS blocks auto-paste — press Cmd+V to "
               "paste it.")},
    {.name = "inserted-raw",
     .text = words("Inserted"),
     .error = words("Couldn't polish the text — inserted the raw transcription.")},
    {.name = "pasting-raw",
     .text = words("Pasting"),
     .isProcessing = true,
     .error = words("Couldn't translate — inserted your original words. Please try again.")},
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
  // A text field with a sentence that is selected; nothing ends it.
  void showField(std::optional<QRect> field) {
    field_ = field;
    update();
  }
  static constexpr QRect selection{26, 46, 318, 22};  // in the field

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QLinearGradient sky(0, 0, width(), height());
    sky.setColorAt(0, isDark_ ? QColor(24, 34, 66) : QColor(178, 208, 242));
    sky.setColorAt(0.55, isDark_ ? QColor(58, 44, 92) : QColor(206, 214, 246));
    sky.setColorAt(1, isDark_ ? QColor(110, 56, 84) : QColor(250, 214, 196));
    painter.fillRect(QRect(0, 0, width(), height()), sky);
    if (field_) paintField(painter);
  }

 private:
  void paintField(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isDark_ ? QColor(70, 70, 78) : QColor(196, 196, 204));
    painter.setBrush(isDark_ ? QColor(30, 30, 34) : QColor(255, 255, 255));
    painter.drawRoundedRect(*field_, 8, 8);
    painter.fillRect(selection.translated(field_->topLeft()),
                     isDark_ ? QColor(38, 74, 132) : QColor(186, 214, 251));
    QFont font = painter.font();
    font.setPixelSize(16);
    painter.setFont(font);
    painter.setPen(isDark_ ? QColor(232, 232, 236) : QColor(28, 28, 32));
    const char* const lines[] = {"Dear Ada,", "we has recieved teh figures you send on Monday.",
                                 "See you on thursday."};
    int y = field_->top() + 34;
    for (const char* const line : lines) painter.drawText(field_->left() + 26, y, line), y += 28;
  }

  bool isDark_ = false;
  std::optional<QRect> field_;
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
    dictation_.lastError =
        state.error == Literal() ? std::nullopt : std::optional<Words>(state.error);
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
    const std::pair<const char*, Words> toasts[] = {
        {"short", words("OK")},
        {"profile", words("{profile} · {mode}",
                          {{"profile", asItStands("Work mail")}, {"mode", modeLabel("improve")}})},
        {"languages", languagePairLabel("en-GB", "pt-BR")},
        {"busy", words("{shortcut} is already in use — pick another in Settings",
                       {{"shortcut", defaultCycleHotKey.label()}})},
        {"long",
         asItStands(
             "A profile whose owner gave it a very long name, longer than any screen is wide, "
             "since "
             "nothing kept him from writing down what it is for, whom it is for, and when he means "
             "to use it next")}};
    for (const auto& [name, text] : toasts) {
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
         {"Could we move our meeting to Thursday at ten?", languageLabel("en"),
          "Could we postpone our meeting to Thursday at ten?",
          "Könnten wir unser Treffen auf Donnerstag um zehn verschieben?", languageLabel("de")}},
        {"differs",
         {"The cheque bounced, so please give me a ring.", languageLabel("en"),
          "The control jumped, therefore hand me jewellery.",
          "La comprobación rebotó, así que dame un anillo.", languageLabel("es")},
         true},
        {"plain", {"See you soon.", languageLabel("auto"), "", "À bientôt.", languageLabel("fr")}},
        {"long", {longText, languageLabel("en"), longText, longText, languageLabel("en-GB")}},
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
    const auto reviewing =
        start(mainThread_, review_.present({"See you soon.", languageLabel("en"), "", "À bientôt.",
                                            languageLabel("fr")}));
    co_await sleepFor(500ms);
    press(Qt::Key_Tab);
    co_await sleepFor(200ms);
    take("review-keyboard");
    closeDialogs();
    co_await reviewing.value();
  }

  Task<> playAlerts() {
    const std::pair<const char*, Alerts::Alert> alerts[] = {
        {"plan-limit",
         {words("Plan limit reached"),
          asItStands("You've used today's free minutes. Upgrade your plan or try again tomorrow."),
          {words("View Plans"), words("Not now")}}},
        {"device-limit",
         {words("This Mac's free limit reached"),
          words("You've reached your plan limit. Upgrade your plan or try again later."),
          {words("View Plans"), words("Not now")}}},
        {"selection-bubble",
         {words("New: edit any text, anywhere"),
          words("Select text in any app — a small Fix / Improve / Translate bar appears over it "
                "and rewrites it in place. It follows your custom instructions, and you can summon "
                "it on the current selection any time with ⌃⌥E.\n\nTurn it on? (You can change "
                "this later in Settings → Selection edit bubble.)"),
          {words("Turn it on"), words("Not now")}}},
        {"translation",
         {words("Translation"),
          words("In {language} · copied to clipboard",
                {{"language", languageNamed("German", "de")}}),
          {words("Copy"), words("Done")},
          Alerts::Style::informational,
          asItStands("Wir treffen uns um neun in dem kleinen Zimmer im zweiten Stock, und bringen "
                     "die Zahlen mit. Wer nicht kommen kann, schreibt bitte vorher.")}},
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
        windows_.make({"quillo-pictures", words("Quillo"), {880, 600}, {880, 640}}, sample.form());
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
        {.title = words("Delete everything?"),
         .sections = {
             {.rows = {{.id = "why",
                        .kind = forms::Note{words("All that is kept here goes, and cannot be "
                                                  "brought back.")}}}},
             {.rows = {
                  {.id = "delete",
                   .kind = forms::Button{words("Delete"), [] {}, forms::ButtonStyle::destructive}},
                  {.id = "keep",
                   .kind = forms::Button{words("Keep"), [] {}, forms::ButtonStyle::prominent}}}}}});
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

  // --- Text in place ---

  Task<> playBubble() {
    const QRect field(340, 300, 560, 150);
    backdrop_.showField(field);
    const Rect selected = linux_host::toPlane(Backdrop::selection.translated(field.topLeft()));
    const auto takeBubble = [this](const char* name) { take(std::string("bubble-") + name, 190); };
    bubble_.muteLabel = "Letters";
    bubble_.isCollapsed = true;
    bubblePanel_.show(selected);
    co_await sleepFor(400ms);
    takeBubble("compact");
    bubble_.isCollapsed = false;
    bubblePanel_.show(selected);
    co_await sleepFor(400ms);
    takeBubble("open");
    bubble_.working = true;
    bubble_.activeAction = BubbleAction::fix;
    co_await sleepFor(400ms);
    takeBubble("busy");
    bubble_.working = false;
    bubble_.error = words("Couldn't fix — try again.");
    bubblePanel_.show(selected);
    co_await sleepFor(300ms);
    takeBubble("error");
    bubble_.error = std::nullopt;
    bubblePanel_.show(selected);
    controlWithId(toolbar_, "custom")->press();
    co_await sleepFor(300ms);
    takeBubble("no-prompts");
    prompts_ = {{.id = "1", .name = "Shorter"}, {.id = "2", .name = "As a list, for the minutes"}};
    bubble_.presentationID = "again";
    controlWithId(toolbar_, "custom")->press();
    co_await sleepFor(300ms);
    takeBubble("prompts");
    prompts_.clear();
    bubble_.presentationID = "over";
    bubblePanel_.orderOut();
    const Rect place = linux_host::toPlane(field);
    badge_.show({place.maxX() - 6 - badge_.size().width, place.minY() + 6});
    co_await sleepFor(300ms);
    takeBubble("badge");
    badge_.orderOut();
    backdrop_.showField(std::nullopt);
  }

  void closeDialogs() {
    for (QWindow* const window : QGuiApplication::topLevelWindows())
      if (window->isVisible() && window->type() == Qt::Dialog) window->close();
  }

  // The windows that are shown, with some of what lies around them.
  void take(const std::string& name, int around = 28) {
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
      {"bubble", &Pictures::playBubble},
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
  MacDictationHUD hud_{mainThread_, panels_, screens_,
                       [this] { return shortcutDisplayText(appState_); }};
  ToastPanel toast_{mainThread_, panels_, screens_};
  BubbleModel bubble_;
  std::vector<PromptInstruction> prompts_;
  SelectionBubblePanel bubblePanel_{mainThread_, panels_, screens_,
                                    [this]() -> Content& { return toolbar_; }};
  BubbleToolbar toolbar_{mainThread_,
                         bubble_,
                         {.perform = [](BubbleAction) {},
                          .performCustom = [](const std::string&) {},
                          .customPrompts = [this] { return prompts_; },
                          .requestResize = [this] { bubblePanel_.requestResize(); },
                          .mute = [] {}}};
  FieldBadgePanel badge_{panels_, [] {}};
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
