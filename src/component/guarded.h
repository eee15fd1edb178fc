#pragma once

#include <exception>
#include <new>

#include "base/error.h"
#include "component/ondrel_component.h"

namespace ondrel {

// Tells a caller of an error through `info`, which may be nullptr, and gives DISP_E_EXCEPTION.
HRESULT tellError(int number, std::string_view source, std::string_view description, EXCEPINFO* info);

// Runs what is behind an entry of the component, from which no exception may get out.
template <class Action>
HRESULT guarded(Action action, EXCEPINFO* info = nullptr) noexcept {
  try {
    try {
      return action();
    } catch (const Error& error) {
      return tellError(error.number(), error.source(), error.description(), info);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (const std::exception& failure) {
      return tellError(E_FAIL, "OndrelCorpComponents", failure.what(), info);
    }
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace ondrel
