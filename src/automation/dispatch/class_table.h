#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "automation/dispatch/member.h"

namespace ondrel {

// The members of a class that pages can call, each listed once.
class ClassTable {
 public:
  // `defaultMember` names the member that stands for the object itself: the value of a field, the item of
  // a collection. A malformed table (a name twice, an unnamed parameter, a required parameter behind an
  // optional one) is a programming error and raises std::logic_error.
  ClassTable(std::string_view className, std::initializer_list<Member> members,
             std::string_view defaultMember = {});
  ClassTable(const ClassTable&) = delete;
  ClassTable& operator=(const ClassTable&) = delete;

  std::string_view className() const { return className_; }
  const std::vector<Member>& members() const { return members_; }
  const Member* defaultMember() const { return defaultMember_; }

  // Names match without regard to case. Nothing when the class has no such member.
  const Member* find(std::string_view name) const;
  // By the number of the member; nothing when no member has it.
  const Member* find(int id) const;
  // Error 438 when the class has no such member.
  const Member& member(std::string_view name) const;

 private:
  void index();

  std::string_view className_;
  std::vector<Member> members_;
  const Member* defaultMember_ = nullptr;
  std::vector<std::int16_t> buckets_;  // places in members_, -1 where free; a power of two
};

// The table of an object's class; error 438 for an object whose class pages do not know.
const ClassTable& classTableOf(const Object& object);

}  // namespace ondrel
