#include "base/dictionary.h"

#include "base/text.h"

namespace ondrel {
namespace {

std::string placeName(const Variant& key) {
  if (key.isText()) return "t" + key.text();
  if (key.isNull() || key.isObject())
    throw Error(ErrorNumber::InvalidCall, "Dictionary", "Invalid procedure call or argument");
  return "n" + numberText(key.toDouble());
}

}  // namespace

void Dictionary::add(const Variant& key, Variant item) {
  const auto [place, isNew] = places_.try_emplace(placeName(key), entries_.size());
  if (!isNew)
    throw Error(ErrorNumber::KeyAlreadyExists, "Dictionary",
                "This key is already associated with an element of this collection");
  entries_.push_back({key, std::move(item)});
}

bool Dictionary::exists(const Variant& key) const {
  return find(key) != nullptr;
}

Variant Dictionary::item(const Variant& key) {
  if (const Variant* found = find(key)) return *found;
  add(key, Variant());
  return Variant();
}

const Variant* Dictionary::find(const Variant& key) const {
  const auto place = places_.find(placeName(key));
  return place == places_.end() ? nullptr : &entries_[place->second].item;
}

void Dictionary::setItem(const Variant& key, Variant item) {
  const auto place = places_.find(placeName(key));
  if (place == places_.end())
    add(key, std::move(item));
  else
    entries_[place->second].item = std::move(item);
}

std::vector<Variant> Dictionary::keys() const {
  std::vector<Variant> result;
  for (const Entry& entry : entries_) result.push_back(entry.key);
  return result;
}

std::vector<Variant> Dictionary::items() const {
  std::vector<Variant> result;
  for (const Entry& entry : entries_) result.push_back(entry.item);
  return result;
}

void Dictionary::remove(const Variant& key) {
  const auto place = places_.find(placeName(key));
  if (place == places_.end()) throw Error(ErrorNumber::ElementNotFound, "Dictionary", "Element not found");
  const size_t removed = place->second;
  places_.erase(place);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(removed));
  for (auto& [name, position] : places_)
    if (position > removed) --position;
}

void Dictionary::removeAll() {
  entries_.clear();
  places_.clear();
}

}  // namespace ondrel
