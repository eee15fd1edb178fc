#pragma once

#include <memory>
#include <string_view>

namespace ondrel {

// Anything that a Variant can hold by reference and a page can call by name.
class Object {
 public:
  virtual ~Object() = default;

  // Name under which the class tables know the members of this object.
  virtual std::string_view className() const = 0;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

using ObjectRef = std::shared_ptr<Object>;

}  // namespace ondrel
