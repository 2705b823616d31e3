#include "SetupNumberAdapter.h"

#include "SetupDoubleInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupDoubleInterface>()
{
    return std::make_unique<SetupNumberAdapter<SetupDoubleInterface, double>>("real-number setting");
}
