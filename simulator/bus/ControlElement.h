#ifndef SIMULATOR_CONTROLELEMENT_H
#define SIMULATOR_CONTROLELEMENT_H

#include "Element.h"

class SimulatorService;

/// "/Simulator": the simulator's own control interface, not the instrument's.
class ControlElement : public Element
{
public:
    explicit ControlElement(SimulatorService &service);

    QString interfaceName() const override;
};

#endif
