#include "Platform/XML/XMLOutput.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "Platform/Base/Budget.h"
#include "Platform/XML/XMLText.h"

namespace xml {

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 14;
constexpr std::size_t kFirstTextSize = std::size_t{1} << 12;
constexpr std::size_t kLastTextSize = std::size_t{1} << 20;

char* put(char* at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

char* putIndent(char* at, std::size_t depth) {
  for (std::size_t i = 0; i < depth; ++i) std::memcpy(at + i * kIndent.size(), kIndent.data(), kIndent.size());
  return at + depth * kIndent.size();
}

}  // namespace

/// An element; one without a name is a comment. Entries are never destroyed, their memory is reused.
struct OutputNode::Entry {
  std::string_view name;
  std::string_view markup;  ///< the text, escaped
  Entry* first = nullptr;
  Entry* last = nullptr;
  Entry* next = nullptr;
  OutputAttribute* attributes = nullptr;
  bool hasText =
      false;  ///< true even if every character was invalid and dropped; written `<Name></Name>`, not `<Name />`

  void append(Entry* child) {
    (last == nullptr ? first : last->next) = child;
    last = child;
  }
};

// OutputNode

bool OutputNode::isElement() const { return entry_ != nullptr && !entry_->name.empty(); }

OutputNode OutputNode::append(Entry* made) const {
  entry_->append(made);
  return {made, memory_};
}

/// Links the entry in front of the child at the index, or behind all.
OutputNode OutputNode::insert(Entry* made, std::size_t index) const {
  Entry* before = nullptr;
  for (Entry* child = entry_->first; child != nullptr && index > 0; child = child->next, --index) before = child;
  made->next = before == nullptr ? entry_->first : before->next;
  (before == nullptr ? entry_->first : before->next) = made;
  if (made->next == nullptr) entry_->last = made;
  return {made, memory_};
}

OutputNode OutputNode::appendChild(std::string_view name, std::string_view text) const {
  if (!isElement()) return {};
  Entry* child = isPlainText(text) ? memory_->newEntry(name, text) : memory_->newEntry(name, escapedText(text));
  child->hasText = !text.empty();
  return append(child);
}

OutputNode OutputNode::insertChild(std::string_view name, std::string_view text, std::size_t index) const {
  if (!isElement()) return {};
  const OutputNode child = insert(memory_->newEntry(name, {}), index);
  child.setText(text);
  return child;
}

OutputNode OutputNode::appendComment(std::string_view text) const {
  return isElement() ? append(memory_->newEntry({}, commentText(text))) : OutputNode();
}

OutputNode OutputNode::insertComment(std::string_view text, std::size_t index) const {
  if (!isElement()) return {};
  return insert(memory_->newEntry({}, commentText(text)), index);
}

OutputNode OutputNode::append(Element element) const {
  return isElement() ? append(element.release().entry_) : OutputNode();
}

void OutputNode::setText(std::string_view text) const {
  if (!isElement()) return;
  entry_->markup = isPlainText(text) ? memory_->kept(text) : memory_->kept(escapedText(text));
  entry_->hasText = !text.empty();
}

const OutputAttribute* OutputNode::setAttribute(std::string_view name, std::optional<std::string_view> value) const {
  if (!isElement()) return nullptr;
  OutputAttribute** link = &entry_->attributes;
  while (*link != nullptr && (*link)->name != name) link = &(*link)->next;
  if (*link == nullptr) *link = new (memory_->allocate(sizeof(OutputAttribute))) OutputAttribute{name, "", nullptr};
  if (value) (*link)->markup = memory_->kept(escapedAttribute(*value));
  return *link;
}

Element OutputNode::copy() const { return Element({memory_->copied(*entry_), memory_}); }

// Element

Element::Element(OutputNode node) : node_(node) { ++node.memory_->owners_; }

Element& Element::operator=(Element&& other) noexcept {
  std::swap(node_, other.node_);
  return *this;
}

Element::~Element() {
  if (node_) node_.memory_->dropOwner();
}

OutputNode Element::release() {
  --node_.memory_->owners_;
  return std::exchange(node_, OutputNode());
}

// ElementMemory

Element ElementMemory::newElement(std::string_view name) { return Element({newEntry(name, {}), this}); }

std::byte* ElementMemory::allocate(std::size_t size) {
  constexpr std::size_t kAlignment = alignof(OutputNode::Entry);
  size = (size + kAlignment - 1) / kAlignment * kAlignment;
  if (used_.left < size) useBlockFor(size);
  used_.left -= size;
  return std::exchange(used_.next, used_.next + size);
}

/// Continues in the next block that is large enough; makes one when there is none.
void ElementMemory::useBlockFor(std::size_t size) {
  while (used_.blocks < blocks_.size() && blocks_[used_.blocks].size < size) ++used_.blocks;
  if (used_.blocks == blocks_.size()) {
    const std::size_t blockSize = std::max(kBlockSize, size);
    platform::Budget::spend(blockSize);
    blocks_.push_back({std::make_unique_for_overwrite<Bytes>(blockSize), blockSize});
  }
  const Block& block = blocks_[used_.blocks];
  used_ = {used_.blocks + 1, block.bytes.get(), block.size};
}

OutputNode::Entry* ElementMemory::newEntry(std::string_view name, std::string_view markup) {
  std::byte* memory = allocate(sizeof(OutputNode::Entry) + markup.size());
  char* text = reinterpret_cast<char*>(memory + sizeof(OutputNode::Entry));
  if (!markup.empty()) put(text, markup);  // an empty view may have a null pointer
  return new (memory) OutputNode::Entry{name, {text, markup.size()}};
}

OutputNode::Entry* ElementMemory::copied(const OutputNode::Entry& original) {
  OutputNode::Entry* entry = newEntry(original.name, original.markup);
  entry->hasText = original.hasText;
  OutputAttribute** link = &entry->attributes;
  for (const OutputAttribute* attribute = original.attributes; attribute != nullptr; attribute = attribute->next) {
    *link = new (allocate(sizeof(OutputAttribute))) OutputAttribute{attribute->name, attribute->markup, nullptr};
    link = &(*link)->next;
  }
  for (const OutputNode::Entry* child = original.first; child != nullptr; child = child->next) {
    entry->append(copied(*child));
  }
  return entry;
}

std::string_view ElementMemory::kept(std::string_view markup) {
  char* memory = reinterpret_cast<char*>(allocate(markup.size()));
  put(memory, markup);
  return {memory, markup.size()};
}

void ElementMemory::dropOwner() {
  if (--owners_ == 0) used_ = {};
}

ElementMemory::Scope::~Scope() {
  if (memory_.owners_ == owners_) memory_.used_ = used_;
}

// Section

void Section::setAttribute(std::string_view name, std::string_view value) {
  attributes_.append(" ").append(name).append("=\"").append(escapedAttribute(value)).append("\"");
}

void Section::appendChild(std::string_view name, std::string_view text) {
  OutputNode::Entry entry;
  entry.name = name;
  entry.hasText = !text.empty();
  const std::string markup = escapedText(text);
  entry.markup = markup;
  append(entry, depth_ + 1);
}

// Takes the element by value, so that its memory is free again once it is written.
void Section::append(Element element) { append(*element.node().entry_, depth_ + 1); }

void Section::appendComment(std::string_view text) {
  OutputNode::Entry entry;
  const std::string markup = commentText(text);
  entry.markup = markup;
  append(entry, depth_ + 1);
}

Section& Section::append(std::unique_ptr<Section> section) {
  endText();
  return *parts_.emplace_back(Part{nullptr, 0, std::move(section)}).section;
}

Section* Section::section(std::string_view name) const {
  const auto part = std::find_if(parts_.begin(), parts_.end(), [name](const Part& candidate) {
    return candidate.section && candidate.section->name_ == name;
  });
  return part == parts_.end() ? nullptr : part->section.get();
}

void Section::append(const OutputNode::Entry& entry, std::size_t depth) {
  constexpr std::size_t kMarks = std::string_view("<!---->\n").size();
  const std::size_t indent = depth * kIndent.size();
  const std::size_t tag = entry.name.size() + kMarks;
  char* at = putIndent(room(indent + tag + entry.markup.size() + tag), depth);
  if (entry.name.empty()) {
    taken(put(put(put(at, "<!--"), entry.markup), "-->\n"));
    return;
  }
  *at++ = '<';
  at = put(at, entry.name);
  if (entry.attributes != nullptr) {
    taken(at);
    for (const OutputAttribute* attribute = entry.attributes; attribute != nullptr; attribute = attribute->next) {
      at = room(attribute->name.size() + attribute->markup.size() + kMarks);
      taken(put(put(put(put(put(at, " "), attribute->name), "=\""), attribute->markup), "\""));
    }
    at = room(entry.markup.size() + tag);
  }
  if (entry.first == nullptr && !entry.hasText) {
    taken(put(at, " />\n"));
    return;
  }
  *at++ = '>';
  at = put(at, entry.markup);
  if (entry.first != nullptr) {
    *at++ = '\n';
    taken(at);
    for (const OutputNode::Entry* child = entry.first; child != nullptr; child = child->next) append(*child, depth + 1);
    at = putIndent(room(indent + tag), depth);
  }
  taken(put(put(put(at, "</"), entry.name), ">\n"));
}

void Section::startText(std::size_t size) {
  const std::size_t capacity = std::max(size, std::clamp(capacity_ * 2, kFirstTextSize, kLastTextSize));
  platform::Budget::spend(capacity);
  if (begin_ && capacity_ >= kLastTextSize) {
    writeAhead();
    if (capacity == capacity_) return;
  }
  endText();
  capacity_ = capacity;
  Part& part = parts_.emplace_back();
  part.text = std::make_unique_for_overwrite<Characters>(capacity_);
  next_ = part.text.get();
  end_ = next_ + capacity_;
}

/// Ends the current part; what is appended next goes into a new one.
void Section::endText() {
  if (next_ != nullptr) parts_.back().size = static_cast<std::size_t>(next_ - parts_.back().text.get());
  next_ = nullptr;
  end_ = nullptr;
}

void Section::write(const Sink& sink) const {
  const std::string indent(depth_ * kIndent.size(), ' ');
  if (!isBegun_) {
    writeHead(sink);
    if (parts_.empty()) return;
  }
  for (std::size_t i = written_; i < parts_.size(); ++i) writePart(parts_[i], sink);
  sink(indent + "</" + std::string(name_) + ">\n");
}

void Section::writeHead(const Sink& sink) const {
  const std::string indent(depth_ * kIndent.size(), ' ');
  sink(indent + "<" + std::string(name_) + attributes_ + (parts_.empty() ? " />\n" : ">\n"));
}

std::string_view Section::textOf(const Part& part) const {
  const bool isGrowing = next_ != nullptr && &part == &parts_.back();
  return {part.text.get(), isGrowing ? static_cast<std::size_t>(next_ - part.text.get()) : part.size};
}

void Section::writeUpTo(const Section& part, const Sink& sink) {
  writeHead(sink);
  isBegun_ = true;
  for (; parts_[written_].section.get() != &part; ++written_) writePart(parts_[written_], sink);
  for (std::size_t i = 0; i < written_; ++i) {
    parts_[i].text.reset();
    if (parts_[i].section)
      parts_[i].section->parts_.clear();  // mappers may still point to the section, so it stays, empty
  }
}

void Section::writePart(const Part& part, const Sink& sink) const {
  if (part.section) {
    part.section->write(sink);
  } else {
    sink(textOf(part));
  }
}

/// Passes all texts to the sink, then reuses the memory of the last one.
void Section::writeAhead() {
  if (ahead_ == nullptr) {
    ahead_ = &begin_();
    writeHead(*ahead_);
    isBegun_ = true;
  }
  for (const Part& part : parts_) (*ahead_)(textOf(part));
  parts_.erase(parts_.begin(), parts_.end() - 1);
  next_ = parts_.back().text.get();
}

// OutputDocument

Section& OutputDocument::setRoot(std::unique_ptr<Section> root) {
  root_ = std::move(root);
  return *root_;
}

void OutputDocument::writeAhead(Section& root, Section& section, const Sink& sink) {
  section.begin_ = [this, &root, &section, &sink]() -> const Sink& {
    sink(kDeclaration);
    isBegun_ = true;
    root.writeUpTo(section, sink);
    return sink;
  };
}

void OutputDocument::serialize(const Sink& sink) const {
  if (!isBegun_) sink(kDeclaration);
  if (root_) root_->write(sink);
}

}  // namespace xml
