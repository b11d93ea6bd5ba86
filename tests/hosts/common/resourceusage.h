#pragma once

class QObject;

// Resources that this process uses: bytes of its heap, descriptors of files and sockets, widgets, and objects below the
// application object and the windows. Written to the object as its properties "heap", "files", "widgets", "objects".
void takeStock(QObject* object);
