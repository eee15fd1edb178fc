#include "data/apartment.h"

#include <utility>

namespace ondrel {
namespace {

ApartmentRef& currentApartment() {
  thread_local ApartmentRef current = std::make_shared<Apartment>();
  return current;
}

}  // namespace

ApartmentRef Apartment::current() {
  return currentApartment();
}

ApartmentScope::ApartmentScope(ApartmentRef apartment)
    : previous_(std::exchange(currentApartment(), std::move(apartment))) {}

ApartmentScope::~ApartmentScope() {
  currentApartment() = std::move(previous_);
}

}  // namespace ondrel
