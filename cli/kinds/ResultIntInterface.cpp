#include "ResultScalarAdapter.h"

#include "ResultIntInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<ResultIntInterface>()
{
    return std::make_unique<ResultScalarAdapter<ResultIntInterface>>("measured integer result");
}
