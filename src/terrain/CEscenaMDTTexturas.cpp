// The images of a terrain: loading and unloading them, their texture objects, and handing them on to references and
// links. Filling tiles and cutting anew is in CEscenaMDTTeselas.cpp.

#include "terrain/CEscenaMDT.h"
#include "terrain/FicheroTexturas.h"
#include "raster/RasterPropio.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <memory>
#include <utility>

using Vertiz::CDibujo;
using Vertiz::CNivelMensajes;
using Vertiz::IRaster;

namespace {

constexpr CNivelMensajes kNivel = 2;
constexpr UINT kModo = CFile::modeReadWrite | CFile::typeBinary;

}  // namespace

// ---- Loading -------------------------------------------------------------------------------------------------------

int CEscenaMDT::CargarImagen(const CString& nombre, IRaster* raster, Vertiz::CDataImagen& imagen,
                             const CDataCargarImagen& opciones, const CString& carpeta) {
    const Vertiz::RasterPropio suelta(raster);
    if (!raster) return 0;
    const std::size_t antes = m_Texturas.size();
    if (!CargarImagen(raster, imagen, opciones, carpeta, kNivel)) return 0;
    if (m_nTipo == 3 || m_Texturas.size() <= antes) return 1;  // cancelled: there is nothing new
    m_Texturas.back().m_sNombreImagen = nombre;
    for (CEscenaMDT* hijo : HijosConImagen())
        hijo->CargarFicheroTexturasTemp(m_Texturas);
    return 1;
}

int CEscenaMDT::CargarImagen(CFile* fichero, unsigned index, CNivelMensajes nivel) {
    FicheroPasajero nuevo(fichero);
    if (!nuevo || index >= m_Texturas.size() || !AsignaTexturas(index, nivel)) return 0;
    return GrabaFicheroTexturas(nuevo.release(), index);
}

int CEscenaMDT::RecargarTexturas(CNivelMensajes nivel) {
    IniciarTexturas(nivel);
    for (unsigned i = 0; i < m_Texturas.size(); ++i)
        if (!AsignaTexturas(i, nivel)) return 0;
    return 1;
}

int CEscenaMDT::CargarTexturaSimple(CDibujo<int>* dibujo, unsigned long color) {
    if (!dibujo) return 0;
    const CDataTexturaSimple textura{static_cast<std::uint32_t>(color), std::shared_ptr<CDibujo<int>>(dibujo)};
    m_TexturasSimples.push_back(textura);
    const auto ultima = static_cast<unsigned>(m_TexturasSimples.size() - 1);
    if (!AsignaTexturaSimple(ultima, kNivel)) return 0;
    for (CEscenaMDT* hijo : HijosConImagen()) {
        hijo->m_TexturasSimples.push_back(textura);
        hijo->AsignaTexturaSimple(ultima, kNivel);
    }
    return 1;
}

int CEscenaMDT::CargarFicheroTexturasTemp(const std::vector<CDataTexturas>& registros) {
    std::vector<CDataTexturas> nuevos = registros;  // it may be this scene's own
    const auto sigue = [&](const CDataTexturas& viejo) {
        return std::ranges::find(nuevos, viejo.m_sNombreFichero, &CDataTexturas::m_sNombreFichero) != nuevos.end();
    };
    while (!m_Texturas.empty())
        DescargarImagen(0, m_Texturas.front().TieneFichero() && !sigue(m_Texturas.front()), 1, 1);
    if (m_bEsReferencia != 0) {
        for (CDataTexturas& registro : nuevos)
            registro.m_bPrestada = 1;
        m_Texturas = std::move(nuevos);
        return 1;
    }
    for (CDataTexturas& registro : nuevos) {
        registro.m_pFichero = nullptr;
        registro.m_pTexturas = nullptr;
        registro.m_bPrestada = 0;
        registro.m_bCargada = 0;
    }
    m_Texturas = std::move(nuevos);
    if (!MakeCurrent(nullptr)) return 0;
    for (CDataTexturas& registro : m_Texturas) {
        auto fichero = std::make_shared<CFile>(registro.m_sNombreFichero, kModo);
        if (!fichero->IsOpen()) return 0;
        registro.m_pFichero = std::move(fichero);
        if (!CreaTexturasGL(registro)) return 0;
    }
    wglMakeCurrent(nullptr, nullptr);
    for (CEscenaMDT* hijo : HijosConImagen())
        hijo->CargarFicheroTexturasTemp(m_Texturas);
    return 1;
}

// ---- The file of a record ------------------------------------------------------------------------------------------

int CEscenaMDT::GrabaFicheroTexturas(CFile* fichero, unsigned index) {
    if (!fichero || index >= m_Texturas.size()) return 0;
    CDataTexturas& registro = m_Texturas[index];
    if (registro.m_bPrestada != 0) registro.m_pTexturas = nullptr;
    if (registro.m_pFichero.get() != fichero) {
        SueltaFichero(registro, registro.TieneFichero());
        registro.m_pFichero.reset(fichero);
    }
    registro.m_sNombreFichero = fichero->GetFilePath();
    registro.m_bPrestada = 0;
    // Tiles without image weren't written; at the end of the file that must not look like a file cut short.
    const std::vector<CNivelTexturas> niveles = NivelesTexturas(registro);
    const auto bytes = niveles.empty() ? 0 : static_cast<ULONGLONG>(niveles.back().Fin(registro.NumTeselas()));
    if (fichero->GetLength() < bytes) fichero->SetLength(bytes);
    return GrabaFicheroTexturas(index);
}

int CEscenaMDT::GrabaFicheroTexturas(const char* datos, int size, unsigned index, const CString& carpeta) {
    if (!datos || size < 0 || index >= m_Texturas.size()) return 0;
    FicheroPasajero fichero = CreaFicheroTexturas(carpeta);
    if (!fichero || !fichero->Write(datos, static_cast<std::size_t>(size))) return 0;
    return GrabaFicheroTexturas(fichero.release(), index);
}

int CEscenaMDT::GrabaFicheroTexturas(unsigned index) {
    if (index >= m_Texturas.size()) return 0;
    CDataTexturas& registro = m_Texturas[index];
    if (registro.m_bPrestada != 0) return registro.m_pTexturas ? 1 : 0;
    if (!MakeCurrent(nullptr)) return 0;
    BorraTexturasGL(registro, true);
    if (!CreaTexturasGL(registro)) return 0;
    wglMakeCurrent(nullptr, nullptr);
    return 1;
}

// ---- Texture objects -----------------------------------------------------------------------------------------------

// Makes the names of a record that has none, in the current context.
int CEscenaMDT::CreaTexturasGL(CDataTexturas& registro) {
    auto texturas = std::make_shared<CTexturasGL>();
    const std::size_t n = registro.NumTeselas();
    texturas->nombres.resize(n);
    texturas->llenas.resize(n);
    if (n > 0) glGenTextures(static_cast<GLsizei>(n), texturas->nombres.data());
    if (HayErrorGL()) return 0;
    registro.m_pTexturas = std::move(texturas);
    registro.m_bCompartida = 0;
    return 1;
}

bool CEscenaMDT::AseguraTexturas(unsigned index) {
    if (index >= m_Texturas.size()) return false;
    CDataTexturas& registro = m_Texturas[index];
    if (registro.m_pTexturas || registro.m_bPrestada != 0) return registro.m_pTexturas != nullptr;
    return CreaTexturasGL(registro) != 0;
}

// Lets the texture objects go; the last record that they belong to deletes them, if bBorrar, in the current context.
// Emptying the set tells those who only look at it.
void CEscenaMDT::BorraTexturasGL(CDataTexturas& registro, bool bBorrar) {
    const std::shared_ptr<CTexturasGL> texturas = std::exchange(registro.m_pTexturas, nullptr);
    registro.m_bCargada = 0;
    if (!texturas || registro.m_bPrestada != 0 || --texturas->duenos > 0) return;
    if (bBorrar && !texturas->nombres.empty())
        glDeleteTextures(static_cast<GLsizei>(texturas->nombres.size()), texturas->nombres.data());
    texturas->nombres.clear();
    texturas->llenas.clear();
}

// ---- Unloading -----------------------------------------------------------------------------------------------------

void CEscenaMDT::DescargarImagen(unsigned index, int borrarFichero, int borrarRegistro, int /*nada*/) {
    if (index >= m_Texturas.size()) return;
    CDataTexturas& registro = m_Texturas[index];
    if (registro.m_bPrestada == 0) {
        SueltaFichero(registro, borrarFichero != 0);
        SueltaTexturas(registro);
    } else if (!registro.EstaDisponible()) {  // the parent has unloaded it
        registro.m_pFichero = nullptr;
        registro.m_pTexturas = nullptr;
        registro.m_bCargada = 0;
    }
    if (borrarRegistro != 0) m_Texturas.erase(m_Texturas.begin() + index);
    for (CEscenaMDT* hijo : HijosConImagen())
        hijo->DescargarImagen(index, 1, borrarRegistro, 1);
}

// Lets a record's file go, and deletes it if bBorrar, unless it is another's. It closes with whoever looks at it last:
// a child may be shared with a copy of this scene, which goes on.
void CEscenaMDT::SueltaFichero(CDataTexturas& registro, bool bBorrar) {
    registro.m_pFichero = nullptr;
    if (bBorrar && registro.m_bPrestada == 0 && !registro.m_sNombreFichero.IsEmpty())
        DeleteFileW(registro.m_sNombreFichero);
}

// Takes the context, where there is one, for deleting a record's texture objects.
void CEscenaMDT::SueltaTexturas(CDataTexturas& registro) {
    if (!registro.m_pTexturas) return;
    const bool ultimo = registro.m_pTexturas->duenos == 1;
    const bool actual = ultimo && MakeCurrent(nullptr);
    BorraTexturasGL(registro, actual);
    if (actual) wglMakeCurrent(nullptr, nullptr);
}

void CEscenaMDT::DescargarTexturaSimple(unsigned index) {
    if (index >= m_TexturasSimples.size()) return;
    m_TexturasSimples.erase(m_TexturasSimples.begin() + index);
    for (CEscenaMDT* hijo : HijosConImagen())
        hijo->DescargarTexturaSimple(index);
}

// At the end of the scene, which has no context and no children any more: its images and areas go, and the files with
// them. Not virtual: a deriving scene is gone.
void CEscenaMDT::DescargaTodo() {
    while (!m_Texturas.empty())
        CEscenaMDT::DescargarImagen(0, 1, 1, 1);
    m_TexturasSimples.clear();
}

// ---- References, links, copies -------------------------------------------------------------------------------------

// The children that show this scene's images, references first; an image by itself hands nothing on.
std::vector<CEscenaMDT*> CEscenaMDT::HijosConImagen() const {
    std::vector<CEscenaMDT*> hijos;
    if (m_nTipo == 3) return hijos;
    for (CGL* hijo : Hijos()) {
        auto* terreno = dynamic_cast<CEscenaMDT*>(hijo);
        if (terreno && (terreno->m_nTipo == 1 || terreno->m_nTipo == 4)) hijos.push_back(terreno);
    }
    return hijos;
}

void CEscenaMDT::ReferenciaNuevo(CGL* r) {
    CGL::ReferenciaNuevo(r);
    EntregaTexturas(r);
}

void CEscenaMDT::VinculoNuevo(CGL* r) {
    CGL::VinculoNuevo(r);
    EntregaTexturas(r);
}

void CEscenaMDT::EntregaTexturas(CGL* hijo) {
    for (CEscenaMDT* otro : HijosConImagen())
        if (otro == hijo) {
            otro->CargarFicheroTexturasTemp(m_Texturas);
            return;
        }
}

void CEscenaMDT::CopiaTexturas(const CEscenaMDT& otra) {
    m_Texturas.resize(otra.m_Texturas.size());
    for (std::size_t i = 0; i < m_Texturas.size(); ++i)
        if (otra.m_Texturas[i].m_bPrestada != 0)
            m_Texturas[i] = otra.m_Texturas[i];
        else
            m_Texturas[i].Duplica(otra.m_Texturas[i]);
    m_TexturasSimples.resize(otra.m_TexturasSimples.size());
    for (std::size_t i = 0; i < m_TexturasSimples.size(); ++i)
        m_TexturasSimples[i].Duplica(otra.m_TexturasSimples[i]);
}

// ---- What a host reads ---------------------------------------------------------------------------------------------

CString CEscenaMDT::GetFicheroTexturasTemp(unsigned index) const {
    return index < m_Texturas.size() ? m_Texturas[index].m_sNombreFichero : CString();
}

bool CEscenaMDT::GetDataTexturas(unsigned index, CDataTexturas& registro) const {
    if (index >= m_Texturas.size()) return false;
    registro = m_Texturas[index];
    registro.m_pFichero = nullptr;
    registro.m_pTexturas = nullptr;
    return true;
}

void CEscenaMDT::GetDataTexturas(std::vector<CDataTexturas>& registros) const {
    registros.resize(m_Texturas.size());
    for (unsigned i = 0; i < registros.size(); ++i)
        GetDataTexturas(i, registros[i]);
}

void CEscenaMDT::CambiaColorTexturaSimple(unsigned index, unsigned long color) {
    if (index < m_TexturasSimples.size()) m_TexturasSimples[index].m_nColor = static_cast<std::uint32_t>(color);
}

std::size_t CEscenaMDT::TriangulosTextura(unsigned index, unsigned fila, unsigned col) const {
    if (index >= m_Texturas.size() || !m_Texturas[index].HayTesela(fila, col)) return 0;
    const CDataTexturas& registro = m_Texturas[index];
    const std::size_t tesela = registro.Tesela(fila, col);
    return tesela < registro.m_TriangulosTextura.size() ? registro.m_TriangulosTextura[tesela].size() : 0;
}
