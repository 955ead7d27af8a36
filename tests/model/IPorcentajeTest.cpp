// Progress is found through the application object.

#include "model/IPorcentaje.h"

#include "platform/CWinApp.h"

#include <gtest/gtest.h>

using namespace Vertiz;

namespace {

class Aplicacion : public CWinApp, public IPorcentaje {
  public:
    int Paso(int, int, int, int) override { return 0; }
    void Empieza(int, unsigned) override {}
    void Termina(int, int) override {}
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString&, int) override {}
};

}  // namespace

TEST(IPorcentaje, IsFoundWhenTheApplicationHasIt) {
    const CWinApp muda;
    EXPECT_EQ(PorcentajeActual(), nullptr);
    {
        Aplicacion aplicacion;
        EXPECT_EQ(PorcentajeActual(), &aplicacion);
    }
    EXPECT_EQ(PorcentajeActual(), nullptr);
}
