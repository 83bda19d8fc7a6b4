#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Building a document that is written. It is not read back, so that it needs no tree: elements in the making are small
// trees in memory that is used again and again, and a finished one is only its text from then on. Names must be
// literals, since they are not copied. What cannot be a character in XML is left out of texts.

namespace xml {

class Element;
class ElementMemory;

// Of a size that is known later. Unlike a vector, what is made of them begins unfilled.
using Bytes = std::byte[];  // NOLINT(*-avoid-c-arrays)
using Characters = char[];  // NOLINT(*-avoid-c-arrays)

struct OutputAttribute {
  std::string_view name;
  std::string_view markup;  ///< the value as it is written
  OutputAttribute* next = nullptr;
};

/// A borrowed view of an element (or a comment) in the making: small, copied by value, valid while what it belongs to
/// has an owner. A view may be empty: building on one does nothing.
class OutputNode {
 public:
  OutputNode() = default;
  explicit operator bool() const { return entry_ != nullptr; }

  [[nodiscard]] bool isElement() const;
  /// An address that tells this node from every other.
  [[nodiscard]] const void* identity() const { return entry_; }

  // The view stays what it is, so that building is const. Each gives a view of what it made, an empty one when this is
  // no element.

  OutputNode appendChild(std::string_view name, std::string_view text = {}) const;
  /// Inserts among the children; an index beyond the last appends.
  OutputNode insertChild(std::string_view name, std::string_view text, std::size_t index) const;
  OutputNode appendComment(std::string_view text) const;
  OutputNode insertComment(std::string_view text, std::size_t index) const;
  /// Puts an element that was made apart, of the same document, behind the children, without a copy.
  OutputNode append(Element element) const;
  /// Gives the element a text, in front of its children.
  void setText(std::string_view text) const;
  /// Gives the attribute the value; makes it, behind the others, when there is none of the name. None leaves an
  /// existing value alone; a new attribute is then empty.
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

/// An element in the making, owned by whoever holds this value and dropped with it unless it is appended.
class Element {
 public:
  Element(Element&& other) noexcept : node_(std::exchange(other.node_, OutputNode())) {}
  Element& operator=(Element&& other) noexcept;
  ~Element();

  /// The element to build on; valid also after it was appended to another one.
  [[nodiscard]] OutputNode node() const { return node_; }
  operator OutputNode() const { return node_; }

 private:
  friend class ElementMemory;
  friend class OutputNode;
  explicit Element(OutputNode node);
  OutputNode release();

  OutputNode node_;
};

/// The memory of elements in the making, which it must outlive. As soon as none of them has an owner, all of it is used
/// anew, which is cheaper than to take each apart.
class ElementMemory {
  /// How far the memory is used: so many blocks, and what is left of the last of them.
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

  /// While elements have owners for long, the memory of those that come and go within the life of this value is used
  /// anew at its end. Older ones must not be built on meanwhile.
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
  /// The markup, copied into this memory.
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

/// Takes a document's text, piece by piece.
using Sink = std::function<void(std::string_view)>;

/// A large element that is written while it grows: what is appended to it is only its text from then on. It may hold
/// other sections; everything stands in the order in which it was appended.
class Section {
 public:
  /// @param depth 0 for the root of a document.
  Section(std::string_view name, std::size_t depth) : name_(name), depth_(depth) {}

  void setAttribute(std::string_view name, std::string_view value);
  void appendChild(std::string_view name, std::string_view text = {});
  void append(Element element);
  void appendComment(std::string_view text);
  /// Appends a section, which must be one level deeper; gives it where it is now.
  Section& append(std::unique_ptr<Section> section);
  Section& appendSection(std::string_view name) { return append(std::make_unique<Section>(name, depth_ + 1)); }
  /// The section with the name; none when there is none.
  [[nodiscard]] Section* section(std::string_view name) const;

  /// Passes the section's text to the sink, but for what has gone there ahead.
  void write(const Sink& sink) const;

 private:
  friend class OutputDocument;

  /// A piece of text, or a section. A text is only appended to, and is never moved.
  struct Part {
    std::unique_ptr<Characters> text;
    std::size_t size = 0;
    std::unique_ptr<Section> section;
  };

  void append(const OutputNode::Entry& entry, std::size_t depth);
  /// Where so many characters can be written; taken() says how far they were.
  [[nodiscard]] char* room(std::size_t size) {
    if (static_cast<std::size_t>(end_ - next_) < size) startText(size);
    return next_;
  }
  void taken(char* end) { next_ = end; }
  void startText(std::size_t size);
  void endText();
  void writeHead(const Sink& sink) const;
  void writePart(const Part& part, const Sink& sink) const;
  /// Passes on and forgets what stands before the section, which is a part of this one.
  void writeUpTo(const Section& part, const Sink& sink);
  void writeAhead();
  /// The text of a part, which may still grow.
  [[nodiscard]] std::string_view textOf(const Part& part) const;

  std::string_view name_;
  std::size_t depth_;
  std::string attributes_;
  std::vector<Part> parts_;
  char* next_ = nullptr;  ///< what is left of the last part, which is a text then
  char* end_ = nullptr;
  std::size_t capacity_ = 0;  ///< of the last text

  std::function<const Sink&()> begin_;  ///< passes on all that stands before this section, and gives the sink
  const Sink* ahead_ = nullptr;         ///< where texts go as soon as they are full, once they have begun to
  bool isBegun_ = false;                ///< the head has been written
  std::size_t written_ = 0;             ///< so many parts have been written
};

/// A document that is written.
class OutputDocument {
 public:
  /// A new element in the making, to be appended to the document or dropped.
  [[nodiscard]] Element newElement(std::string_view name) { return memory_.newElement(name); }
  /// Of the memory of elements in the making.
  [[nodiscard]] ElementMemory::Scope scope() { return ElementMemory::Scope(memory_); }
  Section& setRoot(std::unique_ptr<Section> root);

  /// Lets the document be written while it grows: as soon as the section's text is more than a megabyte or so, it goes
  /// to the sink, and all that stands before it in the root. From now on, that must not change. A document that stays
  /// smaller is written by serialize() alone.
  /// @param section a section of the root. @param sink the one that serialize() will be given; must outlive this.
  void writeAhead(Section& root, Section& section, const Sink& sink);

  /// The document as well-formed UTF-8 XML, piece by piece: declaration, then the root indented by two blanks a level.
  /// Of a document that is written ahead: the rest.
  void serialize(const Sink& sink) const;

 private:
  ElementMemory memory_;
  std::unique_ptr<Section> root_;
  bool isBegun_ = false;
};

}  // namespace xml
