// What is wrong with the page as it is shown now, as a list of sentences: what sticks out or is cut, texts too pale for
// their ground (WCAG 2.1: 4.5 to 1, large ones 3 to 1), links too small for a finger, and what those miss who do not see.
(() => {
  const faults = [];
  const expect = (is, what) => { if (!is) faults.push(what); };
  const name = (e) => `<${e.localName}> ${(e.textContent || e.id).trim().slice(0, 40)}`;
  const all = (selector) => [...document.querySelectorAll(selector)];
  const width = document.documentElement.clientWidth;

  expect(document.documentElement.scrollWidth <= width, "wider than its window");
  for (const box of all(".defile")) {
    const scrolls = box.scrollWidth > box.clientWidth + 1;
    expect(!scrolls || box.tabIndex === 0, `${name(box)} scrolls and cannot be reached by keyboard`);
    expect(!scrolls || width < 2560, `${name(box)} scrolls although there is room`);
    expect(box.getAttribute("aria-label"), `${name(box)} has no name`);
  }
  for (const picture of all("svg")) {
    expect(picture.getBoundingClientRect().width > 20, "a picture is not drawn");
    expect(picture.querySelector(":scope>title") && picture.querySelector(":scope>desc"), "a picture has no title or description");
    expect(["img", "group"].includes(picture.getAttribute("role")), "a picture has no role");
    expect(picture.getAttribute("role") === "group" || !picture.querySelector("a"), "a link is inside of an image");
    for (const text of picture.querySelectorAll("text"))
      expect(parseFloat(getComputedStyle(text).fontSize) * picture.getScreenCTM().a >= 9, `${name(text)} is too small`);
    const labels = [...picture.querySelectorAll("text")].map((text) => [text, text.getBoundingClientRect()]);
    for (const [a, x] of labels)
      for (const [b, y] of labels)
        expect(a === b || x.right <= y.left + 1 || y.right <= x.left + 1 || x.bottom <= y.top + 3 || y.bottom <= x.top + 3,
               `${name(a)} and ${name(b)} overlap`);
  }
  for (const image of all("img")) expect(image.complete && image.naturalWidth > 0 && image.alt, `${image.src} is not there`);

  const light = (colour) => {
    const [r, g, b] = colour.match(/[\d.]+/g).map((part) => (part /= 255) <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const ground = light(getComputedStyle(document.body).backgroundColor);
  const seen = new Set();
  for (const e of all("body *")) {
    const isText = [...e.childNodes].some((node) => node.nodeType === 3 && node.data.trim());
    const style = getComputedStyle(e);
    const colour = e.namespaceURI.endsWith("svg") ? style.fill : style.color;
    if (!isText || e.localName === "title" || e.localName === "desc" || seen.has(colour)) continue;
    seen.add(colour);
    const [low, high] = [light(colour), ground].sort((a, b) => a - b);
    expect((high + 0.05) / (low + 0.05) >= 4.5, `${name(e)} is too pale: ${colour}`);
  }

  for (const landmark of ["main", "nav", "footer", "h1"]) expect(all(landmark).length === 1, `no single <${landmark}>`);
  expect(document.documentElement.lang === "fr" && document.title, "no language or title");
  let level = 0;
  for (const heading of all("h1,h2,h3")) {
    expect(+heading.localName[1] <= level + 1, `${name(heading)} leaves a level out`);
    level = +heading.localName[1];
  }
  const ids = all("[id]").map((e) => e.id);
  expect(new Set(ids).size === ids.length, "an id comes twice");
  for (const table of all("table"))
    expect(table.querySelector("thead th[scope=col]"), "a table has no names of columns");
  for (const link of all("a[href]")) {
    expect(link.textContent.trim() || link.querySelector("[alt]") || link.ariaLabel, "a link has no name");
    const box = link.getBoundingClientRect();
    expect(!link.closest("nav,th") || (box.width >= 44 && box.height >= 44), `${name(link)} is small for a finger`);
  }
  return faults;
})()
