#include "ResultScalarAdapter.h"

#include "ResultBoolInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultBoolInterface>()
{
    return std::make_unique<ResultScalarAdapter<ResultBoolInterface>>("measured boolean result");
}
