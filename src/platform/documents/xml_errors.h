#pragma once

#include <libxml/globals.h>
#include <libxml/xmlerror.h>

namespace kartocheck {

// An error handler of a single parser or validator that says nothing: what a document holds must
// not reach a log.
inline constexpr auto IgnoreXmlError = [](void*, auto) {};

// Silences the errors that libxml2 raises without a context (regular expressions of a schema, for
// example), which it would otherwise print. Restores the thread's handlers when it goes.
class QuietXmlErrors {
 public:
  QuietXmlErrors()
      : structured_(xmlStructuredError),
        structuredContext_(xmlStructuredErrorContext),
        generic_(xmlGenericError),
        genericContext_(xmlGenericErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, IgnoreXmlError);
    xmlSetGenericErrorFunc(nullptr, IgnoreText);
  }
  ~QuietXmlErrors() {
    xmlSetStructuredErrorFunc(structuredContext_, structured_);
    xmlSetGenericErrorFunc(genericContext_, generic_);
  }
  QuietXmlErrors(const QuietXmlErrors&) = delete;
  QuietXmlErrors& operator=(const QuietXmlErrors&) = delete;

 private:
  static void IgnoreText(void*, const char*, ...) {}

  xmlStructuredErrorFunc structured_;
  void* structuredContext_;
  xmlGenericErrorFunc generic_;
  void* genericContext_;
};

}  // namespace kartocheck
