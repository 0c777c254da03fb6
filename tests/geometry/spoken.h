// What a call says on standard output, by the way it takes there.
#ifndef VELMORN64_TESTS_GEOMETRY_SPOKEN_H
#define VELMORN64_TESTS_GEOMETRY_SPOKEN_H

#include <string>

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace velmorn {

struct Spoken {
  std::string stream; // through std::cout
  std::string printf; // past it
};

template <typename Call>
Spoken spokenBy(Call&& call) {
  Spoken spoken;
  testing::internal::CaptureStdout();
  {
    ConsoleCapture stream;
    call();
    spoken.stream = stream.text();
  }
  spoken.printf = testing::internal::GetCapturedStdout();
  return spoken;
}

} // namespace velmorn

#endif // VELMORN64_TESTS_GEOMETRY_SPOKEN_H
