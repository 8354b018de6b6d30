// SPDX-License-Identifier: MIT
//
// Calls the library alone, which calls the services.
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

using namespace quon::interaction;

int main()
{
    return InteractionManager::getInstance()->triggerEvent(InteractionEvent("tool:select", "start")) ? 1 : 0;
}
