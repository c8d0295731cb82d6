// The words by which a field or a window is known.
#pragma once

#include <string_view>

namespace quillo {

// A field whose hints hold one of these anywhere is protected, ignoring case and diacritics.
inline constexpr std::string_view sensitivePhrases[] = {
    // who one is
    "password", "passcode", "pin code", "email", "e-mail",
    // search and address boxes
    "address and search", "address bar", "search box", "search field", "search or enter", "omnibox",
    "url", "location bar",
    // numbers and codes
    "phone", "credit card", "card number", "expiration", "cvv", "cvc", "security code", "one-time",
    "one time", "otp", "verification code", "authentication code", "authenticator", "two-factor",
    "2fa"};

// A dialog whose lower-cased title holds one of these anywhere is no place to write.
inline constexpr std::string_view nonWritingDialogTitles[] = {
    "open",    "save",     "save as",    "choose",     "select file", "select folder",
    "export",  "import",   "browse",     "folder",     "attach",      "upload",
    "insert",  "print",    "page setup", "properties", "preferences", "settings",
    "options", "get info", "sign in",    "log in",     "sign up",     "install",
    "update",  "about",    "setup"};

// What is asked for in fields that hold no prose: English, German, Spanish, French, Norwegian and
// Portuguese.
inline constexpr std::string_view nonProsePhrases[] = {
    // English
    "search", "find", "filter", "address", "domain", "jump to", "go to", "goto", "username",
    "login", "log in", "sign in", "sign up", "nickname", "mobile", "zip", "postal", "postcode",
    "city", "street", "country", "date", "time", "year", "month", "amount", "price", "quantity",
    "number", "coupon", "promo", "voucher", "discount", "iban", "confirmation code", "folder",
    "path", "recipient", "recipients", "add people", "terminal", "id", "name", "sku", "vat", "ssn",
    "isbn", "ean",
    // German
    "suche", "suchen", "suchfeld", "filtern", "adresse", "gehe zu", "benutzername", "anmelden",
    "anmeldung", "vorname", "nachname", "anzeigename", "spitzname", "dateiname", "telefon",
    "telefonnummer", "handy", "nummer", "plz", "postleitzahl", "ort", "stadt", "straße", "land",
    "datum", "uhrzeit", "jahr", "monat", "betrag", "preis", "menge", "anzahl", "gutschein",
    "rabatt", "kontonummer", "bestätigungscode", "ordner", "pfad", "umbenennen", "empfänger",
    "personen hinzufügen",
    // Spanish
    "buscar", "búsqueda", "buscador", "filtrar", "filtro", "dirección", "ir a", "usuario",
    "iniciar sesión", "acceder", "nombre", "apellido", "apellidos", "apodo", "teléfono", "móvil",
    "número", "código postal", "ciudad", "calle", "país", "fecha", "hora", "año", "importe",
    "precio", "cantidad", "cupón", "descuento", "código de confirmación", "carpeta", "ruta",
    "renombrar", "destinatario", "destinatarios", "agregar personas", "añadir personas",
    // French
    "rechercher", "recherche", "filtre", "filtrer", "aller à", "identifiant", "connexion",
    "se connecter", "prénom", "nom", "pseudo", "surnom", "téléphone", "numéro", "code postal",
    "ville", "rue", "pays", "heure", "année", "mois", "montant", "prix", "quantité", "remise",
    "code de confirmation", "dossier", "chemin", "renommer", "destinataire", "destinataires",
    "ajouter des personnes",
    // Norwegian
    "søk", "søke", "søkefelt", "gå til", "brukernavn", "logg inn", "logg på", "pålogging",
    "fornavn", "etternavn", "visningsnavn", "kallenavn", "navn", "mobil", "postnummer", "poststed",
    "gate", "dato", "klokkeslett", "år", "måned", "beløp", "pris", "antall", "kupong",
    "bekreftelseskode", "mappe", "bane", "mottaker", "mottakere", "legg til personer",
    // Portuguese
    "pesquisar", "pesquisa", "localizar", "busca", "endereço", "ir para", "usuário", "utilizador",
    "iniciar sessão", "nome", "sobrenome", "apelido", "telefone", "celular", "cep", "cidade", "rua",
    "data", "ano", "mês", "valor", "preço", "quantidade", "cupom", "desconto",
    "código de confirmação", "pasta", "caminho", "renomear", "destinatário", "destinatários",
    "adicionar pessoas"};

// What is asked for in fields in which one writes, in the same languages.
inline constexpr std::string_view writingPhrases[] = {
    // English
    "subject", "message", "imessage", "comment", "comments", "reply", "caption", "compose", "write",
    "chat", "note", "notes", "description", "post", "status", "answer", "title", "body",
    // German
    "betreff", "nachricht", "kommentar", "antwort", "beschreibung", "notiz", "notizen", "schreiben",
    "verfassen",
    // Spanish
    "asunto", "mensaje", "comentario", "comentarios", "respuesta", "responder", "descripción",
    "nota", "notas", "escribir", "escribe", "redactar", "título",
    // French
    "objet", "commentaire", "commentaires", "réponse", "répondre", "rédiger", "écrire", "titre",
    // Norwegian
    "emne", "melding", "svar", "beskrivelse", "notat", "notater", "skriv", "skrive", "tittel",
    // Portuguese
    "assunto", "mensagem", "comentário", "comentários", "resposta", "descrição", "escrever",
    "escreva", "digite", "redigir", "corpo"};

}  // namespace quillo
