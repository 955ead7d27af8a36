#pragma once
// A raster without pixels, for tests that need one to ask and to free. They override what they look at.

#include "raster/IRaster.h"

class RasterVacio : public Vertiz::IRaster {
  public:
    void Limpiar() override {}
    void SetNombre(const wchar_t*) override {}
    bool SetFichero(CFile*) override { return false; }
    bool CierraFichero() override { return false; }
    int Leer(bool) override { return 0; }
    int Alto100() const override { return 100; }
    int Ancho100() const override { return 100; }
    int Alto() const override { return 1; }
    int Ancho() const override { return 1; }
    UINT BytesFila() const override { return 4; }
    const wchar_t* Nombre() const override { return L""; }
    bool TienePaleta() const override { return false; }
    int BytesPixel() const override { return 3; }
    float Resolucion() const override { return 72; }
    const BYTE* Paleta() const override { return nullptr; }
    int Crear(int, int, int, float, const BYTE*, const BYTE*, const BYTE*, bool) override { return 0; }
    bool SetPixel(int, int, const BYTE*) override { return false; }
    bool GetPixel(BYTE*, int, int, int) const override { return false; }
    bool GetFila(BYTE*, int, int, int) const override { return false; }
    int Reducir(int, int) override { return 0; }
    int NumMuestras() const override { return 3; }
    int Tipo() const override { return 20; }
};
