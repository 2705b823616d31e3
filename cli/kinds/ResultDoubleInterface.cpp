#include "ResultScalarAdapter.h"

#include "ResultDoubleInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultDoubleInterface>()
{
    return std::make_unique<ResultScalarAdapter<ResultDoubleInterface>>("measured real-number result");
}
