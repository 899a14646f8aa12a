// The forwarding table: every function that leaves the library, in the order of exports.def, with the address that a call to
// it reaches. The build writes it from exports.def, so that a listed name without a body does not link. Calls enter the
// functions directly; the table is where a dispatcher would hook in.
#pragma once

namespace zelcv {

struct Forward {
    const char* name;
    void (*function)();
};

extern const Forward kForwardingTable[];
extern const int kForwardingCount;

} // namespace zelcv
