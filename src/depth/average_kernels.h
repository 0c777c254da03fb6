// The averages of a burst over a range of its samples, in plain and in vector form.
//
// Every form gives the same bits. Nothing but intrinsics may be used in the vector forms' files: an
// inline library function compiled there could be picked by the linker for the whole library and
// stop it on an older processor.
#ifndef VELMORN64_DEPTH_AVERAGE_KERNELS_H
#define VELMORN64_DEPTH_AVERAGE_KERNELS_H

#include <cstddef>

#include "foundation/platform.h"
#include "velmorn64.h"

namespace velmorn {

// Writes average[first .. last) from the samples of the same indices of `count` images, at least 1.
// Sums are chains of additions in float, in the order of the images, starting from 0; each mean is
// one division in float, cut off to an integer. Sums are rounded from the 257th image (depth) or
// the 65794th (bytes) on. Rounded up, the mean of more than 131072 depth samples can be 65536; the
// low 16 bits of it are kept. Nothing is allocated.

// Samples of 16 bits. Those that are 0 do not count; where all are, the mean is 0.
using AverageDepth = void (*)(const tagOzKImage* images, int count, std::size_t first,
                              std::size_t last, unsigned short* average);

// Samples of 8 bits, all of them count.
using AverageBytes = void (*)(const tagOzKImage* images, int count, std::size_t first,
                              std::size_t last, unsigned char* average);

struct AverageKernels {
  AverageDepth depth;
  AverageBytes bytes;
};

// The plain form, in every build.
const AverageKernels& plainAverageKernels();

// The forms for a vector level; in builds for other processors than x86-64 there are none.
#if defined(VELMORN_X86_KERNELS)
const AverageKernels& avx2AverageKernels();
const AverageKernels& avx512AverageKernels();
#endif

// The form for a vector level that the processor supports.
const AverageKernels& averageKernels(VectorLevel level);

} // namespace velmorn

#endif // VELMORN64_DEPTH_AVERAGE_KERNELS_H
