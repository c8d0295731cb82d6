#include "simulation/explore/planted_bugs.h"

#include "simulation/world/event_reading.h"
#include "simulation/world/forwarding_ports.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t commandKey = codeOf(Key::command);
constexpr std::int64_t pasteKey = codeOf(Key::v);

class ClipboardNotRestored final : public ForwardingPasteboard {
 public:
  ClipboardNotRestored(Pasteboard& below, const MainThread& mainThread)
      : ForwardingPasteboard(below), mainThread_(mainThread) {}
  void clearContents() override {
    drops_ = mainThread_.now() - lastWrite_ < 400ms;
    if (!drops_) below_.clearContents();
  }
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override {
    if (drops_) return {};
    lastWrite_ = mainThread_.now();
    return below_.writeItems(items);
  }

 private:
  const MainThread& mainThread_;
  MonotonicTime lastWrite_ = MonotonicTime::distantPast();
  bool drops_ = false;
};

class PastedTwice final : public ForwardingKeyPoster {
 public:
  using ForwardingKeyPoster::ForwardingKeyPoster;
  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override {
    const auto posted = below_.post(keyCode, direction, flags, userData);
    if (keyCode == pasteKey && direction == KeyDirection::up) {
      below_.post(keyCode, KeyDirection::down, flags, userData);
      below_.post(keyCode, KeyDirection::up, flags, userData);
    }
    return posted;
  }
};

class KeyLeftDown final : public ForwardingKeyPoster {
 public:
  using ForwardingKeyPoster::ForwardingKeyPoster;
  Result<void, KeyPosterFailure> post(std::int64_t keyCode, KeyDirection direction,
                                      std::uint64_t flags, std::int64_t userData) override {
    if (keyCode == commandKey && direction == KeyDirection::up) return {};
    return below_.post(keyCode, direction, flags, userData);
  }
};

class PastedIntoWhateverIsInFront final : public ForwardingWorkspace {
 public:
  using ForwardingWorkspace::ForwardingWorkspace;
  // As if it had always stayed there.
  std::optional<RunningApplication> frontmostApplication() const override {
    const auto front = below_.frontmostApplication();
    if (!first_ && front) first_ = front;
    return first_;
  }

 private:
  mutable std::optional<RunningApplication> first_;
};

class SegmentsLeft final : public ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;
  Result<void, FileFailure> remove(const FilePath& path) override {
    if (path.filename().string().starts_with(segmentPrefix)) return {};
    return below_.remove(path);
  }
};

class MicrophoneLeftOpen final : public ForwardingAudioSystem {
 public:
  using ForwardingAudioSystem::ForwardingAudioSystem;
  std::unique_ptr<AudioEngine> makeEngine() override {
    if (++made_ % 5 == 0) {
      forgotten_.push_back(below_.makeEngine());
      forgotten_.back()->start();
    }
    return below_.makeEngine();
  }

 private:
  int made_ = 0;
  std::vector<std::unique_ptr<AudioEngine>> forgotten_;
};

// Does something more when a line begins so.
class ActingLog final : public ForwardingLog {
 public:
  ActingLog(Log& below, std::string beginning, std::function<void()> act)
      : ForwardingLog(below), beginning_(std::move(beginning)), act_(std::move(act)) {}
  void log(std::string_view category, std::string_view message) override {
    below_.log(category, message);
    if (message.starts_with(beginning_)) act_();
  }

 private:
  std::string beginning_;
  std::function<void()> act_;
};

class WordsLogged final : public ForwardingPasteboard {
 public:
  WordsLogged(Pasteboard& below, Log& log) : ForwardingPasteboard(below), log_(log) {}
  Result<void, PasteboardFailure> writeItems(const std::vector<PasteboardItem>& items) override {
    for (const PasteboardItem& item : items)
      for (const auto& [type, bytes] : item.representations) log_.log("clipboard", "copy " + bytes);
    return below_.writeItems(items);
  }

 private:
  Log& log_;
};

// The twentieth transcription is never answered, not even with a failure.
class RequestForgotten final : public URLSessions {
 public:
  RequestForgotten(URLSessions& below, MainThread& mainThread)
      : below_(below), mainThread_(mainThread) {}
  std::unique_ptr<URLSession> make(URLSessionConfiguration configuration) override {
    return std::make_unique<Session>(below_.make(configuration), *this);
  }

 private:
  class Session final : public URLSession {
   public:
    Session(std::unique_ptr<URLSession> below, RequestForgotten& sessions)
        : below_(std::move(below)), sessions_(sessions) {}
    Task<Result<URLResponse, URLError>> data(URLRequest request) override {
      const bool isTranscription = request.method == "POST" && request.url.ends_with("/transcribe");
      if (isTranscription && ++sessions_.transcriptions_ == 20) {
        const Completion<> never(sessions_.mainThread_);
        co_await never;
      }
      co_return co_await below_->data(std::move(request));
    }

   private:
    std::unique_ptr<URLSession> below_;
    RequestForgotten& sessions_;
  };

  URLSessions& below_;
  MainThread& mainThread_;
  int transcriptions_ = 0;
};

// What a keyboard tells is changed on its way: each value becomes some.
class ChangedKeyboards final : public HIDKeyboards {
 public:
  using Receive = std::function<void(const HIDValue&)>;
  using Change = std::function<void(const HIDValue&, const Receive&)>;
  ChangedKeyboards(HIDKeyboards& below, Change change)
      : below_(below), change_(std::move(change)) {}
  Result<std::unique_ptr<Manager>, HIDError> open(Receive changed) override {
    return below_.open([change = change_, changed = std::move(changed)](const HIDValue& value) {
      change(value, changed);
    });
  }

 private:
  HIDKeyboards& below_;
  Change change_;
};

bool isModifier(const HIDValue& value) {
  return value.usagePage != hid::keyboardPage || hid::isModifier(value.usage);
}

void dropReleases(const HIDValue& value, const ChangedKeyboards::Receive& receive) {
  if (value.value != 0 || !isModifier(value)) receive(value);
}

// Taps tell of each key as if the fingers lay on Control and Option.
class ModifiersIgnored final : public EventTaps {
 public:
  explicit ModifiersIgnored(EventTaps& below) : below_(below) {}
  Result<std::unique_ptr<Tap>, EventTapFailure> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)> seen,
      std::function<void(TapInterruption)> interrupted) override {
    return below_.createKeyDownTap(
        [seen = std::move(seen)](const KeyEvent& event) {
          KeyEvent changed = event;
          if (event.flags & event_flags::option)
            changed.flags = event_flags::control | event_flags::option;
          return seen(changed);
        },
        std::move(interrupted));
  }

 private:
  EventTaps& below_;
};

void postPaste(KeyPoster& keys) {
  keys.post(commandKey, KeyDirection::down, event_flags::command, 0);
  keys.post(pasteKey, KeyDirection::down, event_flags::command, 0);
  keys.post(pasteKey, KeyDirection::up, event_flags::command, 0);
  keys.post(commandKey, KeyDirection::up, 0, 0);
}

void removeRecordings(World& world, FileManager& files) {
  for (const FilePath& path : world.desktop().files().allFiles())
    if (path.extension() == ".m4a") files.remove(path);
}

void logToken(const HostPorts& ports) {
  const auto token = ports.keychain->read("com.murmex.mac.auth", "mac.accessToken");
  ports.log->log("auth", "token=" + token.value_or(""));
}

ChangedKeyboards::Change lateKeys(World& world) {
  return [&world](const HIDValue& value, const ChangedKeyboards::Receive& receive) {
    receive(value);
    if (isModifier(value) || value.value == 0) return;
    world.desktop().after(320ms, [value, receive] { receive(value); });
  };
}

// A modifier that is pressed shows as released and pressed once more.
ChangedKeyboards::Change bouncingKeys(World& world) {
  return [&world](const HIDValue& value, const ChangedKeyboards::Receive& receive) {
    receive(value);
    if (!isModifier(value) || value.value == 0) return;
    HIDValue released = value;
    released.value = 0;
    world.desktop().after(400ms, [released, receive] { receive(released); });
    world.desktop().after(410ms, [value, receive] { receive(value); });
  };
}

void hidePanelInRecordings(World& world) {
  world.trace().watch([&world](const Event& event) {
    if (!turns(event, events::Flag::isRecording, true)) return;
    world.desktop().after(1s, [&world] {
      if (!world.dictation().isRecording) return;
      const auto visible = world.desktop().panels().visible();
      for (simulated::VirtualPanel* panel : visible) panel->orderOut();
    });
  });
}

// An `Over` in the place of the port that it stands on.
template <class Over, class Port, class... Arguments>
World::Layer layer(HostPorts ports, PortHandle<Port> HostPorts::* place, Arguments&&... arguments) {
  Port& below = ports.*place;
  const auto over = std::make_shared<Over>(below, std::forward<Arguments>(arguments)...);
  ports.*place = *over;
  return {ports, over};
}

World::Layer logLayer(const HostPorts& ports, std::string beginning, std::function<void()> act) {
  return layer<ActingLog>(ports, &HostPorts::log, std::move(beginning), std::move(act));
}

World::Layer plant(PlantedBug bug, World& world, const HostPorts& ports) {
  switch (bug) {
    case PlantedBug::none:
      return {ports, nullptr};
    case PlantedBug::clipboardNotRestored:
      return layer<ClipboardNotRestored>(ports, &HostPorts::pasteboard, ports.mainThread);
    case PlantedBug::pastedTwice:
      return layer<PastedTwice>(ports, &HostPorts::keyPoster);
    case PlantedBug::keyLeftDown:
      return layer<KeyLeftDown>(ports, &HostPorts::keyPoster);
    case PlantedBug::pastedIntoWhateverIsInFront:
      return layer<PastedIntoWhateverIsInFront>(ports, &HostPorts::workspace);
    case PlantedBug::segmentsLeft:
      return layer<SegmentsLeft>(ports, &HostPorts::files);
    case PlantedBug::microphoneLeftOpen:
      return layer<MicrophoneLeftOpen>(ports, &HostPorts::audioSystem);
    case PlantedBug::wordsLogged:
      return layer<WordsLogged>(ports, &HostPorts::pasteboard, ports.log);
    case PlantedBug::requestForgotten:
      return layer<RequestForgotten>(ports, &HostPorts::network, ports.mainThread);
    case PlantedBug::releaseIgnored:
      return layer<ChangedKeyboards>(ports, &HostPorts::hidKeyboards, dropReleases);
    case PlantedBug::routesNotMerged:
      // Too late for the debounce.
      return layer<ChangedKeyboards>(ports, &HostPorts::hidKeyboards, lateKeys(world));
    case PlantedBug::modifiersIgnored:
      return layer<ModifiersIgnored>(ports, &HostPorts::eventTaps);
    case PlantedBug::holdBounces:
      return layer<ChangedKeyboards>(ports, &HostPorts::hidKeyboards, bouncingKeys(world));
    case PlantedBug::panelHides:
      hidePanelInRecordings(world);
      return {ports, nullptr};
    case PlantedBug::dismissalForgotten:
      return {.ports = ports, .kept = nullptr, .forgetsDismissals = true};
    case PlantedBug::pastedAfterCancel:
      return logLayer(ports, "processing cancelled; audio kept",
                      [&keys = *ports.keyPoster] { postPaste(keys); });
    case PlantedBug::recordingDeletedOnFailure:
      return logLayer(ports, "process failed; kept",
                      [&world, &files = *ports.files] { removeRecordings(world, files); });
    case PlantedBug::tokenLogged:
      return logLayer(ports, "attempt app=", [ports] { logToken(ports); });
  }
}

}  // namespace

World::MakeLayer layerWith(PlantedBug bug) {
  if (bug == PlantedBug::none) return {};
  return [bug](World& world, const HostPorts& ports) { return plant(bug, world, ports); };
}

}  // namespace quillo::sim
