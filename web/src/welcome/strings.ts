// The welcome page's texts. The studio passes its UI language as `lang`; anything we have no table
// for falls back to English, so a new studio language never shows an empty page.

export type StringKey =
    | 'tagline'
    | 'version'
    | 'start'
    | 'newProject'
    | 'newProjectHint'
    | 'openProject'
    | 'openProjectHint'
    | 'recentProjects'
    | 'noRecent'
    | 'noRecentHint'
    | 'recentUnavailable'
    | 'connecting'
    | 'cannotReach'
    | 'cannotReachHint';

export type Strings = Readonly<Record<StringKey, string>>;

export type Language = 'en' | 'de' | 'fr';

const en: Strings = {
    tagline: 'Design and animate for the web',
    version: 'Version {version}',
    start: 'Start',
    newProject: 'New Project',
    newProjectHint: 'Start from an empty stage',
    openProject: 'Open Project\u2026',
    openProjectHint: 'Continue with a project on disk',
    recentProjects: 'Recent Projects',
    noRecent: 'No recent projects',
    noRecentHint: 'Projects you open or create appear here.',
    recentUnavailable: 'Recent projects are unavailable.',
    connecting: 'Connecting\u2026',
    cannotReach: 'Cannot reach Vetra Studio.',
    cannotReachHint: 'The start page lost its connection to the studio. Use the File menu, or restart Vetra Studio.',
};

const de: Strings = {
    tagline: 'Gestalten und animieren f\u00fcr das Web',
    version: 'Version {version}',
    start: 'Starten',
    newProject: 'Neues Projekt',
    newProjectHint: 'Mit einer leeren B\u00fchne beginnen',
    openProject: 'Projekt \u00f6ffnen\u2026',
    openProjectHint: 'Ein gespeichertes Projekt fortsetzen',
    recentProjects: 'Zuletzt verwendete Projekte',
    noRecent: 'Keine zuletzt verwendeten Projekte',
    noRecentHint: 'Projekte, die Sie \u00f6ffnen oder anlegen, erscheinen hier.',
    recentUnavailable: 'Zuletzt verwendete Projekte sind nicht verf\u00fcgbar.',
    connecting: 'Verbindung wird hergestellt\u2026',
    cannotReach: 'Vetra Studio ist nicht erreichbar.',
    cannotReachHint:
        'Die Startseite hat die Verbindung zum Studio verloren. Verwenden Sie das Men\u00fc \u201eDatei\u201c oder starten Sie Vetra Studio neu.',
};

const fr: Strings = {
    tagline: 'Concevez et animez pour le Web',
    version: 'Version {version}',
    start: 'Commencer',
    newProject: 'Nouveau projet',
    newProjectHint: 'Partir d\u2019une sc\u00e8ne vide',
    openProject: 'Ouvrir un projet\u2026',
    openProjectHint: 'Reprendre un projet enregistr\u00e9',
    recentProjects: 'Projets r\u00e9cents',
    noRecent: 'Aucun projet r\u00e9cent',
    noRecentHint: 'Les projets que vous ouvrez ou cr\u00e9ez apparaissent ici.',
    recentUnavailable: 'Les projets r\u00e9cents ne sont pas disponibles.',
    connecting: 'Connexion\u2026',
    cannotReach: 'Impossible de joindre Vetra Studio.',
    cannotReachHint:
        'La page d\u2019accueil a perdu la connexion avec le studio. Utilisez le menu Fichier ou red\u00e9marrez Vetra Studio.',
};

const tables: Readonly<Record<Language, Strings>> = { en, de, fr };

/**
 * Maps what the studio stores as its language ("de", "de_DE", "de-AT", "FR", "" …) to a table we
 * have. Only the primary subtag counts: the page has no regional wording.
 */
export function pickLanguage(lang: string | null | undefined): Language {
    const primary = (lang ?? '').trim().toLowerCase().split(/[-_.@]/)[0] ?? '';
    return primary === 'de' || primary === 'fr' ? primary : 'en';
}

export function stringsFor(language: Language): Strings {
    return tables[language];
}

/** Fills `{name}` placeholders; an unknown placeholder stays visible rather than vanishing. */
export function format(text: string, values: Readonly<Record<string, string>>): string {
    return text.replace(/\{(\w+)\}/g, (whole, name: string) =>
        Object.prototype.hasOwnProperty.call(values, name) ? (values[name] as string) : whole,
    );
}
