#include "automation/dispatch/class_table.h"

#include <algorithm>
#include <bit>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::uint32_t kHashSeed = 2166136261u;
constexpr std::uint32_t kHashPrime = 16777619u;

// Member names are ASCII letters and digits, so folding bit 5 ignores their case.
std::uint32_t hashOf(std::string_view name) {
  std::uint32_t hash = kHashSeed;
  for (const char c : name) hash = (hash ^ (static_cast<unsigned char>(c) | 0x20u)) * kHashPrime;
  return hash;
}

// Callers may keep a member's number, so it must not move when rows come before it. It leads to the same bucket
// as the name.
int idOf(std::string_view name) {
  return static_cast<int>(hashOf(name) & 0x7FFFFFFFu);
}

void checkParameters(std::string_view className, const Member& member) {
  bool optionalSeen = false;
  for (const MemberParameter& parameter : member.parameters) {
    if (parameter.name.empty() || (optionalSeen && !parameter.isOptional()))
      throw std::logic_error("malformed parameters of " + std::string(className) + "." +
                             std::string(member.name));
    optionalSeen = parameter.isOptional();
  }
}

}  // namespace

size_t Member::requiredArguments() const {
  size_t count = 0;
  while (count < parameters.size() && !parameters[count].isOptional()) ++count;
  return count;
}

ClassTable::ClassTable(std::string_view className, std::initializer_list<Member> members,
                       std::string_view defaultMember)
    : className_(className), members_(members) {
  index();
  if (defaultMember.empty()) return;
  defaultMember_ = find(defaultMember);
  if (!defaultMember_) throw std::logic_error("no default member in " + std::string(className));
}

void ClassTable::index() {
  buckets_.assign(std::bit_ceil(members_.size() * 2 + 1), -1);
  for (size_t place = 0; place < members_.size(); ++place) {
    Member& member = members_[place];
    member.id = idOf(member.name);
    checkParameters(className_, member);
    if (member.name.empty() || find(member.name) || member.id == 0 || find(member.id))
      throw std::logic_error("name missing or twice in " + std::string(className_) + ": " +
                             std::string(member.name));
    size_t bucket = hashOf(member.name) & (buckets_.size() - 1);
    while (buckets_[bucket] >= 0) bucket = (bucket + 1) & (buckets_.size() - 1);
    buckets_[bucket] = static_cast<std::int16_t>(place);
  }
}

const Member* ClassTable::find(std::string_view name) const {
  for (size_t bucket = hashOf(name) & (buckets_.size() - 1); buckets_[bucket] >= 0;
       bucket = (bucket + 1) & (buckets_.size() - 1)) {
    const Member& member = members_[static_cast<size_t>(buckets_[bucket])];
    if (equalsIgnoringCase(member.name, name)) return &member;
  }
  return nullptr;
}

const Member* ClassTable::find(int id) const {
  for (size_t bucket = static_cast<size_t>(id) & (buckets_.size() - 1); buckets_[bucket] >= 0;
       bucket = (bucket + 1) & (buckets_.size() - 1)) {
    const Member& member = members_[static_cast<size_t>(buckets_[bucket])];
    if (member.id == id) return &member;
  }
  return nullptr;
}

const Member& ClassTable::member(std::string_view name) const {
  if (const Member* found = find(name)) return *found;
  throw Error(ErrorNumber::NoSuchMember, className_,
              "Object doesn't support this property or method: '" + std::string(className_) + "." +
                  std::string(name) + "'");
}

}  // namespace ondrel
