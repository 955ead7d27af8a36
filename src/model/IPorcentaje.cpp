// How an operation finds the progress interface of the application.

#include "model/IPorcentaje.h"

#include "platform/CWinApp.h"

namespace Vertiz {

IPorcentaje::~IPorcentaje() = default;

IPorcentaje* PorcentajeActual() {
    return dynamic_cast<IPorcentaje*>(AfxGetApp());
}

}  // namespace Vertiz
