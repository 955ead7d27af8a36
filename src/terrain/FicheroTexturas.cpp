// The layout of the texture file, in one place for those who write and those who read it.

#include "terrain/FicheroTexturas.h"

#include "terrain/CDataTexturas.h"
#include "raster/FicheroTemporal.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <limits>

std::vector<CNivelTexturas> NivelesTexturas(int ancho, int alto, std::size_t teselas, bool bPiramide) {
    std::vector<CNivelTexturas> niveles;
    if (ancho < 1 || alto < 1) return niveles;
    std::int64_t inicio = 0;
    for (; ancho > 0 || alto > 0; ancho /= 2, alto /= 2) {
        niveles.push_back({ancho, alto, BytesFilaTextura(ancho) * alto, inicio});
        inicio = niveles.back().Fin(teselas);
        if (!bPiramide) break;
    }
    return niveles;
}

std::vector<CNivelTexturas> NivelesTexturas(const CDataTexturas& registro) {
    return NivelesTexturas(registro.m_nAnchoTextura, registro.m_nAltoTextura, registro.NumTeselas(),
                           registro.m_bPiramidales != 0);
}

bool FijaTamanosTextura(CDataTexturas& registro) {
    constexpr std::int64_t kMaximo = std::numeric_limits<std::int32_t>::max();
    if (registro.m_nAnchoTextura < 1 || registro.m_nAltoTextura < 1) return false;
    const std::int64_t fila = BytesFilaTextura(registro.m_nAnchoTextura);
    const auto teselas = static_cast<std::int64_t>(registro.NumTeselas());
    if (fila > kMaximo / registro.m_nAltoTextura || teselas < 1 || teselas > kMaximo) return false;
    registro.m_nSizeTextura = static_cast<int>(fila * registro.m_nAltoTextura);
    registro.m_nSizeNivel0 = std::int64_t{registro.m_nSizeTextura} * teselas;
    return true;
}

void BorraFichero::operator()(CFile* fichero) const {
    const CString ruta = fichero->GetFilePath();
    fichero->Close();
    delete fichero;
    if (!ruta.IsEmpty()) DeleteFileW(ruta);
}

FicheroPasajero CreaFicheroTexturas(const CString& carpeta, CString* ruta) {
    CString nombre;
    FicheroPasajero fichero(Vertiz::CreaFicheroNuevo(carpeta, L"Texturas", nombre).release());
    if (ruta) *ruta = nombre;
    return fichero;
}

bool LeeTesela(const CFile& fichero, std::int64_t posicion, std::span<BYTE> pixeles) {
    std::size_t leidos = 0;
    if (!fichero.ReadAt(static_cast<ULONGLONG>(posicion), pixeles.data(), pixeles.size(), leidos)) return false;
    std::ranges::fill(pixeles.subspan(leidos), BYTE{255});
    return true;
}
