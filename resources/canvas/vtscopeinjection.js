// Names that the project's own functions can use. This text is put in front of the functions
// inside a document's data script (and, for a preloader, inside the load script), so it shares
// their scope; comments are stripped on export by a scan that does not know strings, so no
// string here may hold two slashes or a slash and a star.

var vetra = Vetra;

// The opened document, once the player has opened it (null before). Handlers also receive it as
// their first argument. The preloader's functions live beside preloaderDocData instead.
function getDocument() {
    var data = typeof docData !== 'undefined' ? docData : preloaderDocData;
    return (data && data.api) || null;
}

// Shortcut for handlers that work on one element of the shown scene by its element id.
function getElementNode(id) {
    var doc = getDocument();
    return doc ? doc.elementNode(id) : null;
}
