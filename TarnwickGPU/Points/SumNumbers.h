// The numbers of the sums to which the kernel of points adds colours: 64 bits, two's complement,
// the low word first. So both forms have the same bytes.
#pragma once

#include "TarnwickGPU/Points/PointBody.h"

namespace tarnwick::gpu {

enum class SumForm : std::uint8_t {
    integers, // atomic operations of 64 bits
    words,    // two atomic additions of 32 bits: whoever makes the low word overflow adds the carry
};

class SumNumbers {
  public:
    // In a storage buffer at the binding.
    SumNumbers(spirv::Module& code, PointBody& body, std::uint32_t binding, SumForm form);

    // Adds a float, less than 2^63, without its fraction. Sums are the same in any order.
    void add(Id index, Id real);
    // The sum as a float. Then it is zero.
    Id take(Id index);

  private:
    struct Pair {
        Id low, high;
    };
    Id constant(std::uint32_t value);
    Id word(spv::Op op, Id a, Id b) { return body_.emit(op, body_.word, {a, b}); }
    Id real(spv::Op op, Id a, Id b) { return body_.emit(op, body_.number, {a, b}); }
    Id addAtomically(Id place, Id number);
    Pair negatedIf(Id isNegative, Pair pair);
    Id place(Id index, std::uint32_t part);

    spirv::Module& code_;
    PointBody& body_;
    SumForm form_;
    Id number_; // of the buffer
    Id buffer_;
};

} // namespace tarnwick::gpu
