#pragma once

#include <memory>

namespace kartocheck {

// Frees what a C library allocated with that library's own function.
template <auto Free>
struct CDeleter;

template <typename Handle, typename Result, Result (*Free)(Handle*)>
struct CDeleter<Free> {
  using Pointee = Handle;
  void operator()(Handle* handle) const { static_cast<void>(Free(handle)); }
};

// An owned handle of a C library, for example CHandle<xmlFreeParserCtxt>.
template <auto Free>
using CHandle = std::unique_ptr<typename CDeleter<Free>::Pointee, CDeleter<Free>>;

}  // namespace kartocheck
