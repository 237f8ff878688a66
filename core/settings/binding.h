#pragma once

#include <functional>

namespace tarnwick {

// A value that a control shows and changes, wherever it is kept. Holds its owner weakly: when that
// is gone, `get` gives the value's default and `set` does nothing.
template <class T>
struct Binding {
  std::function<T()> get;
  std::function<void(const T&)> set;
};

}  // namespace tarnwick
