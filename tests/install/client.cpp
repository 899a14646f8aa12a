// A client in C++, of zelcore and of one subsystem of zelcv: says which build it got, if the calls give what they should.
#include <zelcore.h>
#include <zelcv/arith.h>

#include <iostream>
#include <memory>

int main()
{
    const std::unique_ptr<Zel32f, decltype(&zelFree)> row(static_cast<Zel32f*>(zelMalloc(8 * sizeof(Zel32f))), zelFree);
    for (int i = 0; i < 8; ++i) row.get()[i] = Zel32f(i);
    const int step = 8 * sizeof(Zel32f);
    if (zeliAbsDiffC_32f_C1R(row.get(), step, row.get(), step, {8, 1}, 10.0f) != zelStatusOk || row.get()[1] != 9) return 1;
    const ZelLibVersion& version = *zelcvGetLibVersion();
    std::cout << "zelcv " << version.major << '.' << version.minor << ' ' << version.targetCode << '\n';
}
