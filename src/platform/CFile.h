#pragma once
// Files of bytes with random access, in 64 bits.

#include "platform/CString.h"
#include "platform/Errores.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <cstddef>

/// What CFile::GetStatus tells of a file. Times are seconds since 1970, UTC.
struct CFileStatus {
    enum : BYTE { readOnly = 0x01, directory = 0x10 };

    LONGLONG m_mtime = 0;
    LONGLONG m_atime = 0;
    ULONGLONG m_size = 0;
    BYTE m_attribute = 0;
    CString m_szFullName;
};

/// A file of bytes. Reads and writes go straight to the system, without a buffer.
///
/// Failure: nothing throws. Every operation tells by its result whether it worked, and leaves the reason in
/// GetLastError. The first failure since Open also stays in GetError, so that whoever writes a long file may look once,
/// at the end.
///
/// An object is used by one thread at a time. It can't be copied; Duplicate makes a second object on the same file.
class LUMBRA_API CFile {
  public:
    /// How to open. The share flags are advisory: they are seen by those who open the same file with one of them.
    /// Without any, the file isn't locked.
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,  ///< nobody else
        shareDenyWrite = 0x0020,  ///< others may read
        shareDenyRead = 0x0030,   ///< as shareExclusive
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,   ///< always so: no file is handed on to a child process
        modeCreate = 0x1000,      ///< makes the file, or empties an existing one
        modeNoTruncate = 0x2000,  ///< with modeCreate: keeps what an existing one holds
        typeText = 0x4000,        ///< for CStdioFile
        typeBinary = 0x8000,
        modeExclusive = 0x10000,  ///< with modeCreate: a new file, its owner's alone; an existing one is a failure
    };
    enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

    /// What Seek gives when it fails.
    static constexpr ULONGLONG posicionMala = ~ULONGLONG{0};

    CFile() = default;
    /// As Open; whether it worked is told by IsOpen.
    CFile(LPCWSTR nombre, UINT modo);
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    /// Closes the file.
    virtual ~CFile();

    /// Opens a file, after closing one that is open. Folders, pipes and sockets are refused.
    virtual BOOL Open(LPCWSTR nombre, UINT modo);
    virtual bool IsOpen() const;
    /// Closes the file; one that isn't open is no failure. False when the system says only now that a write was lost.
    virtual bool Close();
    /// Closes the file and drops what hadn't been written yet.
    virtual void Abort();

    /// Reads up to `n` bytes; gives how many were read, less than asked for only at the end of the file or on failure.
    virtual size_t Read(void* datos, size_t n);
    /// Reads up to `n` bytes from a place on, without using or moving the position. GetError takes no note of it.
    /// @param leidos out: how many were read, less than `n` where the file ends
    /// @return false on failure, and where this object buffers (CStdioFile)
    /// @thread any, also several on one object that none of them closes
    bool ReadAt(ULONGLONG posicion, void* datos, size_t n, size_t& leidos) const;
    /// Writes `n` bytes; false when not all of them could be written.
    virtual bool Write(const void* datos, size_t n);
    /// Makes sure that what was written is with the system. It doesn't wait for the disk.
    virtual bool Flush();

    /// Moves the position, also beyond the end; gives the new one, or posicionMala when it would be negative.
    virtual ULONGLONG Seek(LONGLONG distancia, UINT desde);
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    virtual ULONGLONG GetPosition() const;
    /// Bytes of the file; 0 when it isn't open.
    virtual ULONGLONG GetLength() const;
    /// Cuts or lengthens the file; new bytes are 0. The position stays.
    virtual bool SetLength(ULONGLONG bytes);

    /// A second object on the same open file, sharing its position; the caller's. Null on failure.
    virtual CFile* Duplicate() const;

    /// Absolute path of the file last opened; empty before the first.
    const CString& GetFilePath() const { return m_strFileName; }
    /// The path's last piece.
    CString GetFileName() const;
    /// First failure since Open; ERROR_SUCCESS while there is none.
    DWORD GetError() const { return m_nError; }
    bool GetStatus(CFileStatus& estado) const;

    static bool GetStatus(LPCWSTR nombre, CFileStatus& estado);
    static bool Remove(LPCWSTR nombre);
    /// An existing file of the new name is an error.
    static bool Rename(LPCWSTR viejo, LPCWSTR nuevo);

  protected:
    /// Notes a failure, with the code for `errno`; always false.
    bool Falla(int numero) const;
    /// Opens without touching this object; -1 on failure, with the last error set.
    static int AbreDescriptor(LPCWSTR nombre, UINT modo);
    void EmpiezaFichero(LPCWSTR nombre);

    CString m_strFileName;
    mutable DWORD m_nError = ERROR_SUCCESS;

  private:
    int m_nDescriptor = -1;
};
