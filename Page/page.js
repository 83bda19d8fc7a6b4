
"use strict";
// Folds groups and zooms the chart. Without it, the page still shows everything. It never treats a text of the plan as
// markup or code. It must not contain the characters that XML reserves, so that the page can be read as XML, too.
(() => {
  const table = document.getElementById("plan");
  const rows = Array.from(table.querySelectorAll("tbody tr"));
  const depths = rows.map((row) => Number(row.dataset.l));
  const buttons = new Map();

  const isFolded = (i) => buttons.has(i) ? buttons.get(i).getAttribute("aria-expanded") === "false" : false;

  function setFolded(i, folded) {
    buttons.get(i).setAttribute("aria-expanded", String(!folded));
    rows[i].classList.toggle("f", folded);
  }

  // Shows the rows from first to end that are in no folded group.
  function show(first, end) {
    let hiddenBelow = Infinity;
    for (let i = first; end > i; i += 1) {
      const hidden = depths[i] > hiddenBelow;
      if (!hidden) hiddenBelow = isFolded(i) ? depths[i] : Infinity;
      rows[i].classList.toggle("h", hidden);
    }
    measure();
  }

  // Tells the browser the height of rows that are out of view, so that it need not lay them out.
  function measure() {
    for (const part of table.tBodies) {
      const shown = part.querySelectorAll("tr:not(.h)").length;
      part.classList.toggle("h", shown === 0);
      part.style.containIntrinsicHeight = `${shown * 1.75}rem`;
    }
  }

  function endOf(i) {
    let end = i + 1;
    while (rows.length > end ? depths[end] > depths[i] : false) end += 1;
    return end;
  }

  rows.forEach((row, i) => {
    if (!(depths[i + 1] > depths[i])) return;
    const button = document.createElement("button");
    button.type = "button";
    button.className = "fold";
    button.textContent = "\u25b8";
    button.setAttribute("aria-label", "Tasks of the group");
    buttons.set(i, button);
    setFolded(i, rows[i + 1].classList.contains("h"));
    button.addEventListener("click", () => {
      setFolded(i, !isFolded(i));
      show(i, endOf(i));
    });
    row.cells[1].prepend(button);
    row.classList.add("s");
  });

  document.querySelectorAll("[data-fold]").forEach((button) => button.addEventListener("click", () => {
    buttons.forEach((_, i) => setFolded(i, button.dataset.fold === "1"));
    show(0, rows.length);
  }));

  // Zooming stretches the numbers after a capital M or H, which are moments; small letters draw shapes and stay.
  const head = table.querySelector(".head");
  const back = document.querySelector(".back");
  const width = head.viewBox.baseVal.width;
  const dayWidth = Number(head.dataset.day);
  const units = Array.from(head.querySelectorAll("g"));
  const drawn = new Map();
  let zoom = 1;

  function stretched(element, name, by) {
    const attributes = drawn.get(element) ?? element.getAttribute(name);
    drawn.set(element, attributes);
    element.setAttribute(name, name === "d"
      ? attributes.replace(/([MH])(-?[\d.]+)/g, (_, letter, x) => letter + Math.round(x * by * 10) / 10)
      : Number(attributes) * by);
  }

  function setZoom(by) {
    zoom = by;
    for (const svg of [back, ...table.querySelectorAll("svg")]) {
      const box = svg.viewBox.baseVal;
      svg.setAttribute("viewBox", `0 0 ${width * by} ${box.height}`);
      svg.setAttribute("width", `${width * by / 16}rem`);
      svg.querySelectorAll("path").forEach((path) => stretched(path, "d", by));
      svg.querySelectorAll("text").forEach((text) => stretched(text, "x", by));
    }
    const best = units.find((unit) => unit.dataset.days * dayWidth * by >= unit.dataset.least) ?? units.at(-1);
    units.forEach((unit) => unit.classList.toggle("on", unit === best));
    const lines = best.querySelector("path:last-of-type").getAttribute("d");
    back.querySelector(".g").setAttribute("d", lines.replace(/ \d+v\d+/g, " 0v1"));
  }

  document.querySelectorAll("[data-zoom]").forEach((button) => button.addEventListener("click", () => {
    const by = Number(button.dataset.zoom);
    setZoom(by === 0 ? 1 : Math.min(16, Math.max(0.25, zoom * by)));
  }));

  // For printing, the chart is as wide as its column, and everything is unfolded except groups that the reader folded.
  let before = zoom;
  let opened = [];
  window.addEventListener("beforeprint", () => {
    const widthOnPaper = 835;
    before = zoom;
    setZoom(widthOnPaper / width);
    opened = Array.from(document.querySelectorAll("details:not([open])"));
    opened.forEach((details) => { details.open = true; });
  });
  window.addEventListener("afterprint", () => {
    setZoom(before);
    opened.forEach((details) => { details.open = false; });
  });

  // Shows the whole of a text that does not fit its cell when the pointer is over it.
  table.addEventListener("pointerover", (event) => {
    const cell = event.target.closest("td, th");
    if (cell ? cell.scrollWidth > cell.clientWidth : false) cell.title = cell.innerText.trim();
  });

  // A link to a note shows the note in a dialog.
  const note = document.getElementById("note");
  document.addEventListener("click", (event) => {
    const link = event.target.closest("a[href^='#']");
    if (!link) return;
    event.preventDefault();
    const entry = document.getElementById(link.getAttribute("href").slice(1));
    note.querySelector("h2").textContent = entry.closest("details").querySelector("summary").textContent;
    note.querySelector("div").replaceChildren(...entry.cloneNode(true).childNodes);
    note.showModal();
  });
  note.addEventListener("click", (event) => {
    if ([note, note.querySelector("button")].includes(event.target)) note.close();
  });

  measure();
  document.querySelectorAll(".scripted").forEach((tools) => { tools.hidden = false; });
})();
