#include "Conform/Order.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Facts.h"

namespace conform {
namespace {

/// The published order of one element's children as a hash table, since a plan has millions of names to look up.
class Order {
 public:
  struct Child {
    std::string_view name;
    std::size_t place = 0;
    bool isDateTime = false;
    Order* order = nullptr;     ///< the order of the child's own children; null when none is published
    Child* follower = nullptr;  ///< the child that came after it the last time
  };

  void add(std::string_view name, Order* order) {
    Child& child = slotOf(name);
    const auto dateTimes = dateTimeElements();
    const bool isDateTime = std::find(dateTimes.begin(), dateTimes.end(), name) != dateTimes.end();
    child = {name, ++count_, isDateTime, order, nullptr};
  }
  /// Finds a child's entry; null when the order does not name it. Elements of one kind mostly have the same children,
  /// so the child that came after `inFront` the last time is tried first.
  [[nodiscard]] Child* find(const char* name, Child* inFront) {
    Child*& guess = inFront == nullptr ? first_ : inFront->follower;
    if (guess != nullptr && std::strncmp(name, guess->name.data(), guess->name.size()) == 0 &&
        name[guess->name.size()] == '\0') {
      return guess;
    }
    Child& child = slotOf(name);
    if (child.name.empty()) return nullptr;
    guess = &child;
    return guess;
  }
  /// The place for children that the order does not name.
  [[nodiscard]] std::size_t last() const { return count_ + 1; }

 private:
  static constexpr std::size_t kSlots = 256;  ///< twice the longest order

  /// The slot that has the name, or where it belongs.
  [[nodiscard]] Child& slotOf(std::string_view name) {
    const auto letter = [name](std::size_t at) { return std::size_t{static_cast<unsigned char>(name[at])}; };
    std::size_t slot = name.empty() ? 0 : name.size() * 31 + letter(0) * 7 + letter(name.size() / 2) * 3;
    slot += name.empty() ? 0 : letter(name.size() - 1);
    while (!slots_[slot % kSlots].name.empty() && slots_[slot % kSlots].name != name) ++slot;
    return slots_[slot % kSlots];
  }

  std::array<Child, kSlots> slots_{};
  Child* first_ = nullptr;  ///< the child that was first the last time
  std::size_t count_ = 0;
};

/// All orders, linked to those of their children.
class Orders {
 public:
  Orders() : facts_(publishedOrders()), orders_(facts_.size()) {
    for (std::size_t i = 0; i < facts_.size(); ++i) {
      std::string_view rest = facts_[i].children;
      while (!rest.empty()) {
        const std::string_view name = rest.substr(0, rest.find(' '));
        orders_[i].add(name, orderOf(name, facts_[i].element));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
      }
    }
  }

  /// The order of the element below the parent; none when there is none.
  [[nodiscard]] Order* orderOf(std::string_view element, std::string_view parent) {
    Order* everywhere = nullptr;
    for (std::size_t i = 0; i < facts_.size(); ++i) {
      if (facts_[i].element != element) continue;
      if (facts_[i].parent == parent) return &orders_[i];
      if (facts_[i].parent.empty()) everywhere = &orders_[i];
    }
    return everywhere;
  }

 private:
  std::span<const PublishedOrder> facts_;
  std::vector<Order> orders_;
};

/// Sorts an element's children, then the children of these, and so on, without recursion.
class Sorter {
 public:
  void sortAllBelow(pugi::xml_node top, Order& order) {
    open_.push_back({top, &order});
    while (!open_.empty()) {
      const Open next = open_.back();
      open_.pop_back();
      sort(next.element, *next.order);
    }
  }
  [[nodiscard]] std::size_t sorted() const { return sorted_; }
  [[nodiscard]] std::size_t emptyDates() const { return emptyDates_; }
  [[nodiscard]] std::size_t shortYears() const { return shortYears_; }

 private:
  struct Open {
    pugi::xml_node element;
    Order* order;
  };
  struct Placed {
    std::size_t place;
    pugi::xml_node node;
  };

  void sort(pugi::xml_node element, Order& order) {
    placed_.clear();
    Order::Child* inFront = nullptr;
    bool isInOrder = true;
    for (pugi::xml_node child = element.first_child(); child;) {
      const pugi::xml_node next = child.next_sibling();
      Order::Child* known = order.find(child.name(), inFront);
      if (known != nullptr) inFront = known;
      const std::size_t place = known == nullptr ? order.last() : placeOf(element, child, *known);
      if (place > 0) {
        isInOrder = isInOrder && (placed_.empty() || placed_.back().place <= place);
        placed_.push_back({place, child});
      }
      child = next;
    }
    if (!isInOrder) rearrange(element);
  }

  /// The child's place; 0 when it was removed. Notes children that need sorting themselves.
  std::size_t placeOf(pugi::xml_node element, pugi::xml_node child, const Order::Child& known) {
    if (known.isDateTime) {
      if (isBlank(textOf(child))) {
        element.remove_child(child);
        ++emptyDates_;
        return 0;
      }
      completeYear(child);
    }
    if (known.order != nullptr) open_.push_back({child, known.order});
    return known.place;
  }

  /// A year has at least four digits in XML: "1-01-01T00:00:00" becomes "0001-01-01T00:00:00".
  void completeYear(pugi::xml_node date) {
    constexpr std::size_t kDigits = 4;
    const std::string_view text = textOf(date);
    const std::size_t digits = text.substr(0, kDigits).find('-');
    if (digits == std::string_view::npos || digits == 0) return;
    setText(date, std::string(kDigits - digits, '0').append(text));
    ++shortYears_;
  }

  void rearrange(pugi::xml_node element) {
    std::stable_sort(placed_.begin(), placed_.end(),
                     [](const Placed& a, const Placed& b) { return a.place < b.place; });
    inOrder_.clear();
    for (const Placed& placed : placed_) inOrder_.push_back(placed.node);
    putInOrder(element, inOrder_);
    ++sorted_;
  }

  std::vector<Open> open_;  ///< elements still to be sorted
  std::vector<Placed> placed_;
  std::vector<pugi::xml_node> inOrder_;
  std::size_t sorted_ = 0;
  std::size_t emptyDates_ = 0;
  std::size_t shortYears_ = 0;
};

}  // namespace

void correctOrder(Copy& copy) {
  Orders orders;
  Sorter sorter;
  sorter.sortAllBelow(copy.project, *orders.orderOf("Project", ""));
  copy.report.count("elements with children in another order", sorter.sorted());
  copy.report.count("empty dates left out", sorter.emptyDates());
  copy.report.count("years of fewer than four digits", sorter.shortYears());
}

}  // namespace conform
