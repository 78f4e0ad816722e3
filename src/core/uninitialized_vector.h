// A vector for large arrays of plain values: growing it leaves the new values unset instead of writing zeros
// that are overwritten at once.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace rowvane {

template <typename T>
struct DefaultInitAllocator : std::allocator<T> {
  template <typename U>
  struct rebind {
    using other = DefaultInitAllocator<U>;
  };

  template <typename U>
  void construct(U* place) noexcept {
    static_assert(std::is_trivially_default_constructible_v<U>);
    ::new (static_cast<void*>(place)) U;
  }
  template <typename U, typename... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
  }
};

template <typename T>
using UninitializedVector = std::vector<T, DefaultInitAllocator<T>>;

}  // namespace rowvane
