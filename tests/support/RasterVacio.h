#pragma once
// A raster without pixels, for tests that need one to ask and to free. They override what they look at.

#include "raster/CBmp.h"

class RasterVacio : public Vertiz::CBmp {
  public:
    bool SetFichero(CFile*) override { return false; }
    int Leer(bool) override { return 0; }
    int Alto100() const override { return 100; }
    int Ancho100() const override { return 100; }
    int Alto() const override { return 1; }
    int Ancho() const override { return 1; }
    int BytesPixel() const override { return 3; }
    int Tipo() const override { return 20; }
};
