#include "bubble/context_keys.h"

#include <algorithm>

#include "base/text.h"
#include "insertion/classification/accessibility_reading.h"

namespace quillo {
namespace {

constexpr int levels = 8;

std::optional<std::string> addressOf(Accessibility& accessibility,
                                     const AccessibilityElement& element) {
  const AccessibilityAnswer answer = accessibility.attribute(element, ax::url);
  if (const auto* url = answer.as<AccessibilityURL>()) return url->absoluteText;
  const auto* text = answer.as<std::string>();
  return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

}  // namespace

std::optional<std::string> hostOfURL(std::string_view url) {
  const std::size_t scheme = url.find("://");
  if (scheme == std::string_view::npos) return std::nullopt;
  std::string_view authority = url.substr(scheme + 3);
  authority = authority.substr(0, authority.find_first_of("/?#"));
  if (const std::size_t user = authority.rfind('@'); user != std::string_view::npos)
    authority.remove_prefix(user + 1);
  std::string_view host = authority;
  if (host.starts_with('[')) {
    host = host.substr(1, host.find(']') - 1);
  } else {
    host = host.substr(0, host.find(':'));
  }
  if (host.starts_with("www.")) host.remove_prefix(4);
  return host.empty() ? std::nullopt : std::optional(std::string(host));
}

// The first level with an address ends the climb, whatever its address is.
std::optional<std::string> ContextKeys::hostAbove(
    const std::optional<AccessibilityElement>& element) const {
  auto level = element;
  for (int i = 0; level && i < levels; ++i) {
    if (const auto address = addressOf(accessibility_, *level)) return hostOfURL(*address);
    level = elementAttribute(accessibility_, *level, ax::parent);
  }
  return std::nullopt;
}

BubbleContext ContextKeys::applicationContext(std::string_view bundleIdentifier) const {
  const auto frontmost = workspace_.frontmostApplication();
  return {"app:" + std::string(bundleIdentifier),
          frontmost ? frontmost->localizedName.value_or("this app") : "this app"};
}

BubbleContext ContextKeys::contextKey(const std::optional<AccessibilityElement>& element,
                                      const std::optional<AccessibilityElement>& second,
                                      std::string_view bundleIdentifier) const {
  auto host = hostAbove(element);
  if (!host && second && second != element) host = hostAbove(second);
  if (host) return {"site:" + *host, *host};
  return applicationContext(bundleIdentifier);
}

bool ContextKeys::isMuted(const std::vector<std::string>& mutedContexts,
                          std::string_view bundleIdentifier,
                          const std::optional<AccessibilityElement>& element) const {
  if (mutedContexts.empty()) return false;
  const auto holds = [&](const std::string& key) {
    return std::ranges::find(mutedContexts, key) != mutedContexts.end();
  };
  // Muted in its own case; lists of older versions may have it in the lower one.
  if (holds("app:" + std::string(bundleIdentifier)) || holds("app:" + lowercased(bundleIdentifier)))
    return true;
  const auto host = hostAbove(element);
  return host && holds("site:" + *host);
}

}  // namespace quillo
