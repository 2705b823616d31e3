#include "SetupNumberAdapter.h"

#include "SetupIntInterface.h"

template<>
std::unique_ptr<KindAdapter> adapterOf<SetupIntInterface>()
{
    return std::make_unique<SetupNumberAdapter<SetupIntInterface, int>>("integer setting");
}
