#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "base/variant.h"

namespace ondrel {

// A keyed collection in order of entry. Keys are numbers or texts: 1 and 1.0 are one key, 1 and "1" are
// two, and texts count with their case.
class Dictionary : public Object {
 public:
  std::string_view className() const override { return "Dictionary"; }

  // Error 457 when the key is taken.
  void add(const Variant& key, Variant item);
  bool exists(const Variant& key) const;
  // The item of the key; a key that is not there is entered with an Empty item, as the platform does.
  Variant item(const Variant& key);
  // The item of the key or nullptr; enters nothing.
  const Variant* find(const Variant& key) const;
  // Replaces the item, or enters the key.
  void setItem(const Variant& key, Variant item);
  int count() const { return static_cast<int>(entries_.size()); }
  std::vector<Variant> keys() const;
  std::vector<Variant> items() const;
  // Error 32811 when the key is not there.
  void remove(const Variant& key);
  void removeAll();

 private:
  struct Entry {
    Variant key;
    Variant item;
  };

  std::vector<Entry> entries_;
  std::unordered_map<std::string, size_t> places_;
};

using DictionaryRef = std::shared_ptr<Dictionary>;

}  // namespace ondrel
