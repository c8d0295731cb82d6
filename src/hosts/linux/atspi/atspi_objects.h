// What is known of the objects of other applications: asked once, and kept while nothing says that
// it has changed.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/atspi_events.h"
#include "hosts/linux/atspi/atspi_object.h"
#include "hosts/linux/atspi/dbus_values.h"

namespace quillo::linux_host {

// What every walk asks of an object.
struct ObjectKind {
  AtspiRole role = AtspiRole::invalid;
  AtspiStates states;
  AtspiAttributes attributes;
  ObjectReference parent;  // null at the top
};

// What it is called by.
struct ObjectWords {
  std::string name;
  std::string description;
  std::string roleName;  // in the user's language
  std::optional<ObjectReference> label;
  bool hasText = false;
  bool hasValue = false;
  bool hasCollection = false;
};

// Main thread. An object that cannot be asked gives nothing.
class AtspiObjects {
 public:
  // Any mixture of these is asked for in one round trip.
  enum Facet : unsigned { kind = 1, words = 2, place = 4, address = 8 };
  // When the user last did anything: the moment from which places may have changed.
  using LastInput = std::function<MonotonicTime()>;

  // The references outlive this.
  AtspiObjects(MainThread& mainThread, AtspiBus& bus, AtspiEvents& events, LastInput lastInput);

  // The pointers are good until the next call of anything here.
  const ObjectKind* kindOf(const ObjectReference& object);
  const ObjectWords* wordsOf(const ObjectReference& object);
  std::optional<PixelRect> placeOf(const ObjectReference& object);
  // Where a document comes from; empty when it does not tell.
  std::string addressOf(const ObjectReference& object);
  // Learns all that is not yet known and wanted, in one round trip. False when it cannot.
  bool learn(const ObjectReference& object, unsigned facets);
  // The same for later, without waiting; then goes on to as many ancestors, of which it learns the
  // kind.
  void learnLater(const ObjectReference& object, unsigned facets, int ancestors = 0);

  // Never kept. Nothing when it cannot be asked.
  std::optional<std::vector<ObjectReference>> childrenOf(const ObjectReference& object);

  // Something about it has changed: what was known is learned again, without waiting.
  void changed(const ObjectReference& object);
  void forget(const ObjectReference& object) { entries_.erase(object); }
  void forgetApplication(const std::string& bus);
  void forgetEverything() { entries_.clear(); }

 private:
  struct Entry {
    std::optional<ObjectKind> kind;
    std::optional<ObjectWords> words;
    std::optional<std::optional<PixelRect>> place;  // known to have none
    std::optional<std::string> address;
    MonotonicTime kindAt;
    MonotonicTime wordsAt;
    MonotonicTime placeAt;
    MonotonicTime addressAt;
    bool isBeingLearned = false;
    bool changedMeanwhile = false;
  };
  enum class Freshness { unknown, old, fresh };

  Freshness freshness(const ObjectReference& object, const Entry& entry, Facet facet) const;
  Freshness freshnessOfPlace(const Entry& entry) const;
  static unsigned facetsOf(const Entry& entry);
  static std::optional<MonotonicTime> learnedAt(const Entry& entry, Facet facet);
  Entry* known(const ObjectReference& object, Facet facet);
  // False when the object has gone.
  bool take(const ObjectReference& object, unsigned facets, const AtspiBus::Replies& replies);
  void learnedLater(const ObjectReference& object, unsigned facets, int ancestors,
                    const AtspiBus::Replies& replies);
  void makeRoom();

  MainThread& mainThread_;
  AtspiBus& bus_;
  AtspiEvents& events_;
  const LastInput lastInput_;
  std::unordered_map<ObjectReference, Entry, ObjectReferenceHash> entries_;
};

}  // namespace quillo::linux_host
