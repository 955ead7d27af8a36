// The sky: a background colour, or an image on a sphere round the viewer.

#include "frame/CGL.h"
#include "frame/ColorGL.h"
#include "frame/Cuadrica.h"
#include "frame/ListaGL.h"
#include "frame/MaterialGL.h"
#include "frame/TexturaGL.h"
#include "raster/CTiff.h"
#include "raster/FilaBGR.h"
#include "raster/RasterPropio.h"
#include "platform/CFile.h"
#include "platform/CStdioFile.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr int kTipoBmp = 21, kTipoJpeg = 22;

// The picture in rows of red, green and blue, every nPaso-th pixel of it; a pixel that can't be read is white.
std::vector<GLubyte> Muestras(const Vertiz::IRaster& imagen, int w, int h, int nPaso) {
    std::vector<GLubyte> filas(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 3);
    Vertiz::FilaBGR fila(imagen, imagen.Ancho());
    GLubyte* destino = filas.data();
    for (int f = 0; f < h; ++f) {
        const BYTE* pixel = fila.Lee(f * nPaso).data();
        for (int c = 0; c < w; ++c, pixel += 3 * nPaso)
            destino = std::reverse_copy(pixel, pixel + 3, destino);
    }
    return filas;
}

// Replaces a picture by a TIFF of the same size, samples and palette. False, with the picture as it was, without room.
bool PasaATiff(Vertiz::IRaster** imagen) {
    auto tiff = std::make_unique<Vertiz::CTiff>();
    if ((*imagen)->Recorta(0, 0, std::abs((*imagen)->Alto()), (*imagen)->Ancho(), tiff.get()) != 1) return false;
    (*imagen)->Borrar();
    *imagen = tiff.release();
    return true;
}

}  // namespace

int CGL::CargarImagenFondo(Vertiz::IRaster** pImagen) {
    Vertiz::IRaster& imagen = **pImagen;
    // A JPEG is read through a buffered stream.
    CFile fichero;
    CStdioFile flujo;
    CFile& origen = imagen.Tipo() == kTipoJpeg ? flujo : fichero;
    if (!origen.Open(m_Data.m_SzImagenFondo, CFile::modeRead | CFile::typeBinary)) return 0;
    const bool leida = imagen.SetFichero(&origen) && imagen.Leer(true) == 1 && imagen.Leer(false) == 1;
    imagen.CierraFichero();
    origen.Close();
    if (!leida) return 0;
    if (imagen.Tipo() != kTipoBmp && !imagen.TienePaleta()) return 1;
    return PasaATiff(pImagen) ? 1 : 0;
}

// Fills m_nTexturaFondo from the sky image. False on a GL error; bBuena tells whether there is a texture to show.
bool CGL::CargaTexturaCielo(bool& bBuena) {
    bBuena = false;
    if (!NuevaTextura(m_nTexturaFondo)) return false;
    Vertiz::IRaster* imagen = Vertiz::CreaRaster(m_Data.m_SzImagenFondo);
    const bool leida = imagen != nullptr && CargarImagenFondo(&imagen) != 0;
    const Vertiz::RasterPropio suelta(imagen);  // only now: a bitmap has been replaced by a TIFF
    if (leida) {
        const int ancho = imagen->Ancho(), alto = std::abs(imagen->Alto());
        const int lado = std::max(m_nMaxTexDim, 1);
        const int paso = std::max(1, (std::max(ancho, alto) + lado - 1) / lado);
        const int w = ancho / paso, h = alto / paso;
        if (w > 0 && h > 0) {
            const std::vector<GLubyte> filas = Muestras(*imagen, w, h, paso);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_COMPRESSED_RGB, w, h, 0, GL_RGB, GL_UNSIGNED_BYTE, filas.data());
            bBuena = !HayErrorGL();
        }
    }
    return true;
}

int CGL::OnIniciarCielo() {
    if (!MakeCurrent(nullptr)) return 0;
    BorraLista(m_nListaCielo);
    if (HayErrorGL()) return 0;
    BorraTextura(m_nTexturaFondo);
    bool conImagen = false;
    if (m_Data.m_bImagenFondo != 0 && !CargaTexturaCielo(conImagen)) return 0;

    if (!AbreLista(m_nListaCielo)) return 0;
    glEnable(GL_DEPTH_TEST);
    if (m_nTipo != 3 && !EsEsferica()) {
        glDisable(GL_LIGHTING);
        if (HayErrorGL()) return 0;
        glDisable(GL_LIGHT0);
        if (HayErrorGL()) return 0;
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        if (HayErrorGL()) return 0;
        glEnable(GL_COLOR_MATERIAL);
        if (HayErrorGL() || !MaterialNulo()) return 0;
    }
    if (conImagen) {
        CompilaEsferaCielo();
    } else {
        FijaColorGL(m_Data.m_nColorFondo);
    }
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

void CGL::CompilaEsferaCielo() const {
    glColor3f(255.0F, 255.0F, 255.0F);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, m_nTexturaFondo);
    glPushMatrix();
    glPushAttrib(0xFFFFF);
    Cuadrica esfera(GLU_FILL, GLU_SMOOTH);
    gluQuadricTexture(esfera, GL_TRUE);
    gluSphere(esfera, 1.0, 20, 16);
    glPopAttrib();
    glPopMatrix();
    RestauraModo();
}
