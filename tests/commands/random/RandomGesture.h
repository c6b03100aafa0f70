#pragma once

#include <QList>
#include <QString>

#include <functional>

class RandomCommandContext;
class VTCommand;

// One kind of user gesture: builds a command from the model as it is, or returns null when the
// model offers nothing to do it on. The ids are those the gesture exists to exercise; the actions
// of the command it returns are what counts.
struct RandomGesture
{
    QString name;
    QList<int> lstIds;
    int nWeight = 1;
    std::function<VTCommand*(RandomCommandContext&)> build;
};
