#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Building a document to be written. Nobody reads it back, so it is no tree: an element is a small tree only while it
// is being built, and becomes text when it is appended to a section. The memory of these small trees is reused.
//
//   Section project("Project", 0);
//   Section& tasks = project.appendSection("Tasks");
//   Element task = document.newElement("Task");
//   task.node().appendChild("Name", "Roof & walls");
//   tasks.append(std::move(task));     // <Task><Name>Roof &amp; walls</Name></Task>; the element is gone
//
// Names are not copied, so they must be literals. Characters that XML does not allow are left out of texts.

namespace xml {

class Element;
class ElementMemory;

// Arrays sized at run time; unlike std::vector they are not zero-filled.
using Bytes = std::byte[];  // NOLINT(*-avoid-c-arrays)
using Characters = char[];  // NOLINT(*-avoid-c-arrays)

struct OutputAttribute {
  std::string_view name;
  std::string_view markup;  ///< the value as it is written
  OutputAttribute* next = nullptr;
};

/// A borrowed view of an element or comment that is being built: small, copied by value, valid while an Element owns
/// the small tree that it is in. A view may be empty: building on one does nothing.
class OutputNode {
 public:
  OutputNode() = default;
  explicit operator bool() const { return entry_ != nullptr; }

  [[nodiscard]] bool isElement() const;
  /// An address that identifies the node.
  [[nodiscard]] const void* identity() const { return entry_; }

  // Building is const, since the view itself does not change. Each operation returns a view of what it made; an empty
  // view when this is not an element.

  OutputNode appendChild(std::string_view name, std::string_view text = {}) const;
  /// Inserts a child in front of the one at the index (0 is the first); appends when the index is beyond the last.
  OutputNode insertChild(std::string_view name, std::string_view text, std::size_t index) const;
  OutputNode appendComment(std::string_view text) const;
  OutputNode insertComment(std::string_view text, std::size_t index) const;
  /// Appends an element that was built separately, without copying it. It must belong to the same document.
  OutputNode append(Element element) const;
  /// Sets the element's text, which is written in front of its children.
  void setText(std::string_view text) const;
  /// Sets the attribute; a new one goes behind the others.
  /// @param value none leaves an existing value alone, and makes a new attribute empty.
  const OutputAttribute* setAttribute(std::string_view name, std::optional<std::string_view> value) const;
  /// A new element that is a deep copy of this one.
  [[nodiscard]] Element copy() const;

 private:
  friend class Element;
  friend class ElementMemory;
  friend class Section;
  struct Entry;
  OutputNode(Entry* entry, ElementMemory* memory) : entry_(entry), memory_(memory) {}
  OutputNode append(Entry* made) const;
  OutputNode insert(Entry* made, std::size_t index) const;

  Entry* entry_ = nullptr;
  ElementMemory* memory_ = nullptr;
};

/// An element being built. Whoever holds this value owns it; unless it is appended, it is dropped with the value.
class Element {
 public:
  Element(Element&& other) noexcept : node_(std::exchange(other.node_, OutputNode())) {}
  Element& operator=(Element&& other) noexcept;
  ~Element();

  /// The view to build on; still valid after the element was appended to another element, but not to a section.
  [[nodiscard]] OutputNode node() const { return node_; }
  operator OutputNode() const { return node_; }

 private:
  friend class ElementMemory;
  friend class OutputNode;
  explicit Element(OutputNode node);
  OutputNode release();

  OutputNode node_;
};

/// The memory of the elements being built; must outlive them. It is reclaimed as a whole once no element has an owner,
/// which is cheaper than freeing each of them.
class ElementMemory {
  /// How much memory is in use: the number of blocks, and the free rest of the last one.
  struct Use {
    std::size_t blocks = 0;
    std::byte* next = nullptr;
    std::size_t left = 0;
  };

 public:
  ElementMemory() = default;
  ElementMemory(const ElementMemory&) = delete;
  ElementMemory& operator=(const ElementMemory&) = delete;

  [[nodiscard]] Element newElement(std::string_view name);

  /// When the scope ends, memory of elements created and dropped inside it is reclaimed, even if older elements are
  /// alive. Do not add to an older element while it is open.
  class Scope {
   public:
    explicit Scope(ElementMemory& memory) : memory_(memory), used_(memory.used_), owners_(memory.owners_) {}
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    ElementMemory& memory_;
    Use used_;
    std::size_t owners_;
  };

 private:
  friend class Element;
  friend class OutputNode;

  [[nodiscard]] std::byte* allocate(std::size_t size);
  void useBlockFor(std::size_t size);
  [[nodiscard]] OutputNode::Entry* newEntry(std::string_view name, std::string_view markup);
  [[nodiscard]] OutputNode::Entry* copied(const OutputNode::Entry& original);
  /// A copy of the markup in this memory.
  [[nodiscard]] std::string_view kept(std::string_view markup);
  void dropOwner();

  struct Block {
    std::unique_ptr<Bytes> bytes;
    std::size_t size = 0;
  };
  std::vector<Block> blocks_;
  Use used_;
  std::size_t owners_ = 0;
};

/// Receives a document's text, piece by piece.
using Sink = std::function<void(std::string_view)>;

/// A large element, kept as text: what is appended is turned into text at once and cannot be changed afterwards. It may
/// hold other sections; everything is written in the order in which it was appended.
class Section {
 public:
  /// @param depth 0 for the root of a document.
  Section(std::string_view name, std::size_t depth) : name_(name), depth_(depth) {}

  void setAttribute(std::string_view name, std::string_view value);
  void appendChild(std::string_view name, std::string_view text = {});
  void append(Element element);
  void appendComment(std::string_view text);
  /// Appends a section, whose depth must be one more than this one's, and returns it.
  Section& append(std::unique_ptr<Section> section);
  Section& appendSection(std::string_view name) { return append(std::make_unique<Section>(name, depth_ + 1)); }
  /// The section with the name; none when there is none.
  [[nodiscard]] Section* section(std::string_view name) const;

  /// Passes the section's text to the sink, except what was written ahead (OutputDocument::writeAhead()).
  void write(const Sink& sink) const;

 private:
  friend class OutputDocument;

  /// A piece of text or a section. A text only grows at its end and is never moved in memory.
  struct Part {
    std::unique_ptr<Characters> text;
    std::size_t size = 0;
    std::unique_ptr<Section> section;
  };

  void append(const OutputNode::Entry& entry, std::size_t depth);
  /// Returns where up to `size` characters can be written; taken() is then told where they end.
  [[nodiscard]] char* room(std::size_t size) {
    if (static_cast<std::size_t>(end_ - next_) < size) startText(size);
    return next_;
  }
  void taken(char* end) { next_ = end; }
  void startText(std::size_t size);
  void endText();
  void writeHead(const Sink& sink) const;
  void writePart(const Part& part, const Sink& sink) const;
  /// Writes, then frees, everything in front of the given part.
  void writeUpTo(const Section& part, const Sink& sink);
  void writeAhead();
  /// The text of a part, which may still grow.
  [[nodiscard]] std::string_view textOf(const Part& part) const;

  std::string_view name_;
  std::size_t depth_;
  std::string attributes_;
  std::vector<Part> parts_;
  char* next_ = nullptr;  ///< free rest of the last part, when that is a text
  char* end_ = nullptr;
  std::size_t capacity_ = 0;  ///< of the last text

  std::function<const Sink&()> begin_;  ///< writes all that stands in front of this section, and returns the sink
  const Sink* ahead_ = nullptr;         ///< where full texts go; null until the first one has gone
  bool isBegun_ = false;                ///< the start tag has been written
  std::size_t written_ = 0;             ///< number of parts already written
};

/// A document to be written.
class OutputDocument {
 public:
  /// A new element to build, then to append or drop.
  [[nodiscard]] Element newElement(std::string_view name) { return memory_.newElement(name); }
  /// See ElementMemory::Scope.
  [[nodiscard]] ElementMemory::Scope scope() { return ElementMemory::Scope(memory_); }
  Section& setRoot(std::unique_ptr<Section> root);

  /// Allows the document to be written while it grows, so that a large one is never in memory as a whole: once the
  /// section's text exceeds about a megabyte, the sink gets the root up to the section, then the section's text. So
  /// nothing in front of the section may change after this call. A smaller document is written by serialize() alone.
  ///
  ///   document.writeAhead(project, tasks, sink);  // nothing is written yet
  ///   tasks.append(...);                          // after a megabyte: "<Project>...<Tasks><Task>..."
  ///   document.serialize(sink);                   // the rest: "...</Task></Tasks>...</Project>"
  /// @param section a section of the root.
  /// @param sink the same one that serialize() is given; must outlive the document.
  void writeAhead(Section& root, Section& section, const Sink& sink);

  /// Passes the document to the sink as well-formed UTF-8 XML: the declaration, then the root, indented by two blanks a
  /// level. When parts were written ahead, only the rest.
  void serialize(const Sink& sink) const;

 private:
  ElementMemory memory_;
  std::unique_ptr<Section> root_;
  bool isBegun_ = false;
};

}  // namespace xml
