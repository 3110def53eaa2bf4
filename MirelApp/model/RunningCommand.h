#pragma once

#include "model/MirelAppModel.h"

namespace mirel {

// Stands at the head of a command and counts it as running until it ends.
class MirelAppModel::RunningCommand
{
public:
    explicit RunningCommand(MirelAppModel& model)
        : m_model(model)
    {
        ++m_model.m_runningCommands;
    }
    ~RunningCommand() { --m_model.m_runningCommands; }
    Q_DISABLE_COPY_MOVE(RunningCommand)

private:
    MirelAppModel& m_model;
};

} // namespace mirel
