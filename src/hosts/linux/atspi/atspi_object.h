// What AT-SPI knows of an object, by its numbers (AT-SPI 2.46, atspi-constants.h).
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace quillo::linux_host {

// An object of an application: the application's name on the bus, and the object's path there.
struct ObjectReference {
  std::string bus;
  std::string path;

  bool isNull() const { return path.empty() || path == "/org/a11y/atspi/null"; }
  friend bool operator==(const ObjectReference&, const ObjectReference&) = default;
};

struct ObjectReferenceHash {
  std::size_t operator()(const ObjectReference& object) const {
    return std::hash<std::string>()(object.path) * 31 + std::hash<std::string>()(object.bus);
  }
};

inline constexpr std::string_view applicationRootPath = "/org/a11y/atspi/accessible/root";

enum class AtspiRole : std::uint32_t {
  invalid = 0,
  alert = 2,
  checkBox = 7,
  checkMenuItem = 8,
  colorChooser = 9,
  columnHeader = 10,
  comboBox = 11,
  dateEditor = 12,
  dialog = 16,
  fileChooser = 19,
  filler = 20,
  fontChooser = 22,
  frame = 23,
  icon = 26,
  image = 27,
  internalFrame = 28,
  label = 29,
  layeredPane = 30,
  list = 31,
  listItem = 32,
  menu = 33,
  menuBar = 34,
  menuItem = 35,
  pageTab = 37,
  pageTabList = 38,
  panel = 39,
  passwordText = 40,
  popupMenu = 41,
  progressBar = 42,
  pushButton = 43,
  radioButton = 44,
  radioMenuItem = 45,
  rootPane = 46,
  rowHeader = 47,
  scrollBar = 48,
  scrollPane = 49,
  separator = 50,
  slider = 51,
  spinButton = 52,
  splitPane = 53,
  statusBar = 54,
  table = 55,
  tableCell = 56,
  tableColumnHeader = 57,
  tableRowHeader = 58,
  tearoffMenuItem = 59,
  terminal = 60,
  text = 61,
  toggleButton = 62,
  toolBar = 63,
  toolTip = 64,
  tree = 65,
  treeTable = 66,
  unknown = 67,
  viewport = 68,
  window = 69,
  paragraph = 73,
  application = 75,
  autocomplete = 76,
  entry = 79,
  documentFrame = 82,
  heading = 83,
  section = 85,
  form = 87,
  link = 88,
  tableRow = 90,
  treeItem = 91,
  documentSpreadsheet = 92,
  documentPresentation = 93,
  documentText = 94,
  documentWeb = 95,
  documentEmail = 96,
  comment = 97,
  listBox = 98,
  grouping = 99,
  blockQuote = 105,
  article = 109,
  landmark = 110,
  log = 111,
  staticText = 116,
  pushButtonMenu = 129,
};

enum class AtspiState : std::uint32_t {
  active = 1,
  checked = 4,
  defunct = 6,
  editable = 7,
  enabled = 8,
  focusable = 11,
  focused = 12,
  modal = 16,
  multiLine = 17,
  sensitive = 24,
  showing = 25,
  singleLine = 26,
  vertical = 29,
  visible = 30,
  hasPopup = 42,
  readOnly = 43,
};

class AtspiStates {
 public:
  constexpr AtspiStates() = default;
  constexpr explicit AtspiStates(std::uint64_t bits) : bits_(bits) {}
  constexpr AtspiStates(std::initializer_list<AtspiState> states) {
    for (const AtspiState state : states) bits_ |= bit(state);
  }

  constexpr bool has(AtspiState state) const { return (bits_ & bit(state)) != 0; }
  constexpr bool hasAll(AtspiStates other) const { return (bits_ & other.bits_) == other.bits_; }
  constexpr bool hasAny(AtspiStates other) const { return (bits_ & other.bits_) != 0; }

 private:
  static constexpr std::uint64_t bit(AtspiState state) {
    return std::uint64_t{1} << static_cast<std::uint32_t>(state);
  }
  std::uint64_t bits_ = 0;
};

using AtspiAttributes = std::map<std::string, std::string, std::less<>>;

// The value of an attribute, empty when the object has none of that name.
inline std::string_view attributeOf(const AtspiAttributes& attributes, std::string_view name) {
  const auto found = attributes.find(name);
  return found == attributes.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace quillo::linux_host
