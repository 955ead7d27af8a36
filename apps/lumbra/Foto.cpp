// Opening of pictures, and what kind of file is one.

#include "Foto.h"

#include "raster/CBmp.h"
#include "raster/CECW.h"
#include "raster/Resultados.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

Vertiz::IRaster* NuevoRaster(const std::string& ruta) {
    if (TerminaEn(ruta, "j2k")) return new Vertiz::CECW;  // the bare codestream of a .jp2
    return Vertiz::CreaRaster(CString(DeUtf8(ruta)));
}

[[noreturn]] void Falla(const std::string& ruta, const std::string& motivo) {
    throw std::runtime_error(ruta + ": " + motivo);
}

// What the result means, with the library's own words where it had any.
std::string Motivo(int resultado, const std::vector<std::string>& mensajes) {
    std::string motivo = "it is damaged, or there is no room for its pixels";
    if (resultado == Vertiz::kCabeceraMala) motivo = "not a picture of the kind that its name says";
    if (resultado == Vertiz::kNoSoportado) motivo = "a kind of picture that can't be read, or a damaged one";
    return mensajes.empty() ? motivo : motivo + " (" + mensajes.back() + ")";
}

}  // namespace

Foto::Foto(const std::string& ruta, Progreso& progreso, Que que) : m_pRaster(NuevoRaster(ruta)) {
    if (m_pRaster == nullptr) Falla(ruta, "not a picture: the names of pictures end in bmp, tif, jpg, jp2 or ecw");
    const CString nombre(DeUtf8(ruta));
    if (!m_Fichero.Open(nombre, CFile::modeRead | CFile::typeBinary))
        Falla(ruta, AUtf8(TextoError(GetLastError()).Texto()));
    m_pRaster->SetNombre(nombre);
    progreso.Calla();
    const int resultado =
        m_pRaster->SetFichero(&m_Fichero) ? m_pRaster->Leer(que == Que::kCabecera) : Vertiz::kCabeceraMala;
    m_pRaster->CierraFichero();
    const std::vector<std::string> mensajes = progreso.Habla();
    if (resultado != 1) Falla(ruta, Motivo(resultado, mensajes));
    if (que == Que::kTodo)  // damage that it was read in spite of
        for (const std::string& mensaje : mensajes)
            std::fprintf(stderr, "%s: warning: %s\n", ruta.c_str(), mensaje.c_str());
    // Depths of bitmaps that have no access to pixels as they are.
    auto* bmp = dynamic_cast<Vertiz::CBmp*>(m_pRaster.get());
    const bool bAjena = bmp != nullptr && bmp->BytesPixel() != 1 && bmp->BytesPixel() != 3;
    if (bAjena && que == Que::kTodo && bmp->Expande() != 1) Falla(ruta, "there is no room for its pixels");
}

void Foto::Fila(int fila, BYTE* bgr) const {
    if (!m_pRaster->GetFila(bgr, Alto() - 1 - fila, 0, Ancho()))
        throw std::runtime_error("the temporary file that holds the pixels can't be read");
}

bool TerminaEn(std::string_view nombre, std::string_view fin) {
    constexpr auto minuscula = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 'a' - 'A') : c; };
    return nombre.size() >= fin.size() &&
           std::equal(fin.rbegin(), fin.rend(), nombre.rbegin(), [=](char a, char b) { return a == minuscula(b); });
}

bool EsFoto(const std::string& ruta, Progreso& progreso) {
    for (const char* fin : {"bmp", "jpg", "jpeg", "jp2", "j2k", "ecw"})
        if (TerminaEn(ruta, fin)) return true;
    if (!TerminaEn(ruta, "tif") && !TerminaEn(ruta, "tiff")) return false;
    try {
        const Foto foto(ruta, progreso, Foto::Que::kCabecera);
        const int muestras = foto.Raster().NumMuestras();
        return foto.Raster().BytesPixel() <= std::min(muestras, 3) ||
               (muestras >= 3 && foto.Raster().BytesPixel() == 6);
    } catch (const std::runtime_error&) {
        return false;  // reading it as heights tells what is wrong with it
    }
}
